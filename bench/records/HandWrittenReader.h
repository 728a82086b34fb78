#pragma once

#include <string_view>

#include "orivex/models/MessageModel.h"

namespace orivex::bench {

/// Decodes one record the way one would by hand: with the same parser as our codec, a loop and a chain of comparisons
/// per record, and no table. Checks types, but is as lazy as the parser about the rest of the text.
/// @throws simdjson::simdjson_error
MessageModel decodeByHand(std::string_view json);

}  // namespace orivex::bench
