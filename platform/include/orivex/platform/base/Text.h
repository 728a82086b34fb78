#pragma once

#include <string>
#include <string_view>

#include "orivex/Export.h"

namespace orivex {

/// Shortest text that reads back as the same double, with at least one decimal: "47.0", "0.5". From 1e16 on and under
/// 0.0001 with an exponent instead: "1e+16".
std::string doubleText(double value);

/// The code points of a UTF-8 text; empty when it is not valid UTF-8 (see `isValidUtf8` to tell it from an empty text).
std::u32string codePoints(std::string_view utf8);

ORIVEX_API bool isValidUtf8(std::string_view text);

/// `text` with U+FFFD in place of every byte that is no part of a valid UTF-8 sequence, as the name of an old file may
/// have them.
ORIVEX_API std::string validUtf8(std::string_view text);

}  // namespace orivex
