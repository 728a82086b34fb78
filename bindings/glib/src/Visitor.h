#pragma once

#include <memory>

#include "orivex-glib.h"

#include "orivex/models/UserMappingModel.h"

namespace orivex::glib {

/// A record with what is known of `visitor` now; null stands for nothing.
std::shared_ptr<UserMappingModel> recordOf(OrivexVisitor* visitor);

}  // namespace orivex::glib
