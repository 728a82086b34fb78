#pragma once

#include <string_view>

namespace orivex::fuzz {

/// Whether a text is JSON (RFC 8259) in valid UTF-8, without lone surrogates, nested at most 512 levels deep. Plain and
/// slow, and with nothing in common with the decoder that is held against it.
bool isJson(std::string_view text);

}  // namespace orivex::fuzz
