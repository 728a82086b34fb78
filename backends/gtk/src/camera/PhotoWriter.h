#pragma once

#include <optional>
#include <string>

#include "../video/GstPointers.h"

#include "orivex/platform/base/Failure.h"

namespace orivex::gtk {

/// Writes a frame as a JPEG into the file at `path`, over what it holds. Worker; blocks.
std::optional<Failure> writePhoto(const SharedSample& frame, const std::string& path);

}  // namespace orivex::gtk
