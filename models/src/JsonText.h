#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orivex {

/// Whether a text is a number by the grammar of JSON, of whatever size.
bool isJsonNumber(std::string_view text);

/// The integer that a JSON number stands for, however it is written (12, 12.0, 1.2e1). Nothing when it has a fraction
/// or does not fit into 64 bits. Exact: no detour over a double.
std::optional<std::int64_t> wholeNumber(std::string_view number);

/// Foreign text made fit for a one-line message in UTF-8: what is long is cut short, and control characters, or bytes
/// of text that is not UTF-8, become '?'.
std::string shown(std::string_view text);

}  // namespace orivex
