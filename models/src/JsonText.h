#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orivex {

/// The number of leading characters that stand in a JSON string as they are: up to a quote, a backslash or a control
/// character.
std::size_t plainLength(std::string_view text);

/// The characters of a JSON string without its escapes. `raw` lies between the quotes and is known to be well-formed.
std::string unescaped(std::string_view raw);

/// Takes an escape, which begins with a backslash, off the front of a text. Nothing when it is not one; a surrogate is
/// one only as the first half of a pair.
std::optional<char32_t> takeEscape(std::string_view& text);

/// Whether a text is a number by the grammar of JSON, of whatever size.
bool isJsonNumber(std::string_view text);

/// The integer that a JSON number stands for, however it is written (12, 12.0, 1.2e1). Nothing when it has a fraction
/// or does not fit into 64 bits.
std::optional<std::int64_t> wholeNumber(std::string_view number);

/// A JSON number as `double` or `float`, rounded once; what is too small to tell from zero is zero. Nothing when it is
/// too large.
template <class Float>
std::optional<Float> floatingNumber(std::string_view number);

/// Foreign text made fit for a one-line message in UTF-8: what is long is cut short, and control characters, or bytes
/// of text that is not UTF-8, become '?'.
std::string shown(std::string_view text);

}  // namespace orivex
