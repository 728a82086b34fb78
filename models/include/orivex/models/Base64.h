#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "orivex/models/Bytes.h"

namespace orivex {

/// The characters that `byteCount` bytes take in padded Base64.
constexpr std::size_t base64Length(std::size_t byteCount) {
  return (byteCount + 2) / 3 * 4;
}

/// Standard Base64 (RFC 4648, section 4) with padding and without line breaks.
std::string base64Encode(std::span<const std::uint8_t> bytes);

/// The same into memory of the caller's: writes exactly `base64Length(bytes.size())` characters to `out`.
void base64Encode(std::span<const std::uint8_t> bytes, char* out);

/// The bytes that a Base64 text stands for. Nothing when the text is not what `base64Encode` would write: missing
/// padding, blanks, the URL alphabet and stray bits before the padding are all refused.
std::optional<Bytes> base64Decode(std::string_view text);

}  // namespace orivex
