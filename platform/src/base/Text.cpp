#include "orivex/platform/base/Text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace orivex {
namespace {

// One code point from the front of `text`, as Unicode allows it: no overlong form, no surrogate, nothing past U+10FFFF.
std::optional<char32_t> takeCodePoint(std::string_view& text) {
  const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char first = byteAt(0);
  const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if ((first >= 0x80 && first < 0xC2) || first > 0xF4 || text.size() < length) return std::nullopt;
  static constexpr std::array<unsigned, 5> leadMask{0, 0x7F, 0x1F, 0x0F, 0x07};
  static constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  char32_t point = first & leadMask[length];
  for (std::size_t index = 1; index < length; ++index) {
    if ((byteAt(index) & 0xC0U) != 0x80U) return std::nullopt;
    point = (point << 6U) | (byteAt(index) & 0x3FU);
  }
  if (point < smallest[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return std::nullopt;
  text.remove_prefix(length);
  return point;
}

}  // namespace

std::string doubleText(double value) {
  // Left to itself, to_chars writes 100000 as 1e+05, which is shorter. Past these bounds digits would be zeros only.
  const double size = std::abs(value);
  const bool plain = size == 0 || (size >= 1e-4 && size < 1e16);
  std::array<char, 32> buffer{};
  const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
  std::string text(buffer.data(), end);
  if (text.find_first_not_of("-0123456789") == std::string::npos) text += ".0";
  return text;
}

std::u32string codePoints(std::string_view utf8) {
  std::u32string points;
  points.reserve(utf8.size());
  while (!utf8.empty()) {
    const auto point = takeCodePoint(utf8);
    if (!point) return {};
    points += *point;
  }
  return points;
}

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    if (!takeCodePoint(text)) return false;
  }
  return true;
}

std::string validUtf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  while (!text.empty()) {
    auto rest = text;
    const bool isValid = takeCodePoint(rest).has_value();
    if (!isValid) rest.remove_prefix(1);
    valid += isValid ? text.substr(0, text.size() - rest.size()) : "\xEF\xBF\xBD";
    text = rest;
  }
  return valid;
}

}  // namespace orivex
