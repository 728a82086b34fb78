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

/// Appends the character that the escape at the front of `json` stands for, and returns the length of the escape. 0
/// when it is not one; a surrogate is one only as the first half of a pair.
std::size_t appendUnescaped(std::string& text, std::string_view json);

/// The number of leading characters that numbers are made of.
std::size_t numberLength(std::string_view text);

/// Whether a text is a number by the grammar of JSON, of whatever size.
bool isJsonNumber(std::string_view text);

/// The integer that a JSON number stands for, however it is written (12, 12.0, 1.2e1). Nothing when it has a fraction
/// or does not fit into 64 bits.
std::optional<std::int64_t> wholeNumber(std::string_view number);

/// A JSON number as `double` or `float`, rounded once; what is too small to tell from zero is zero. Nothing when it is
/// too large.
template <class Float>
std::optional<Float> floatingNumber(std::string_view number);

}  // namespace orivex
