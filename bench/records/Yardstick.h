#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "orivex/models/MessageModel.h"

namespace orivex::bench {

/// Decodes with nlohmann-json: a tree first, then the record out of it, with the checks of our decoder.
MessageModel decodeByTree(std::string_view json);

/// The tree that holds the same as the record.
nlohmann::json treeOf(const MessageModel& record);

}  // namespace orivex::bench
