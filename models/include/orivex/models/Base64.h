#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "orivex/models/Bytes.h"

namespace orivex {

/// Standard Base64 (RFC 4648, section 4) with padding and without line breaks.
std::string base64Encode(std::span<const std::uint8_t> bytes);

/// The same, at the end of a text.
void appendBase64(std::string& text, std::span<const std::uint8_t> bytes);

/// The bytes that a Base64 text stands for. Nothing when the text is not what `base64Encode` would write: missing
/// padding, blanks, the URL alphabet and stray bits before the padding are all refused.
std::optional<Bytes> base64Decode(std::string_view text);

}  // namespace orivex
