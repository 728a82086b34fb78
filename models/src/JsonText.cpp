#include "JsonText.h"

#include <charconv>
#include <cstddef>
#include <limits>

#include <simdjson.h>

namespace orivex {
namespace {

constexpr std::size_t longestShown = 40;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Takes the digits at the head of a text off it.
std::string_view takeDigits(std::string_view& text) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length])) ++length;
  const std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  return digits;
}

bool takeOne(std::string_view& text, std::string_view anyOf) {
  if (text.empty() || anyOf.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

bool isJsonNumber(std::string_view text) {
  takeOne(text, "-");
  const std::string_view whole = takeDigits(text);
  if (whole.empty() || (whole.front() == '0' && whole.size() > 1)) return false;
  if (takeOne(text, ".") && takeDigits(text).empty()) return false;
  if (takeOne(text, "eE")) {
    takeOne(text, "+-");
    if (takeDigits(text).empty()) return false;
  }
  return text.empty();
}

std::optional<std::int64_t> wholeNumber(std::string_view number) {
  const bool negative = takeOne(number, "-");
  std::string digits{takeDigits(number)};
  std::int64_t exponent = 0;
  if (takeOne(number, ".")) {
    const std::string_view fraction = takeDigits(number);
    digits += fraction;
    exponent -= static_cast<std::int64_t>(fraction.size());
  }
  digits.erase(0, digits.find_first_not_of('0'));
  if (digits.empty()) return 0;
  if (takeOne(number, "eE")) {
    takeOne(number, "+");
    std::int64_t written = 0;
    const auto parsed = std::from_chars(number.data(), number.data() + number.size(), written);
    constexpr std::int64_t beyondAnyText = std::numeric_limits<std::int64_t>::max() / 2;
    if (parsed.ec != std::errc{} || written > beyondAnyText || written < -beyondAnyText) return std::nullopt;
    exponent += written;
  }
  const std::size_t significant = digits.find_last_not_of('0') + 1;
  exponent += static_cast<std::int64_t>(digits.size() - significant);
  digits.resize(significant);

  constexpr std::int64_t mostDigits = std::numeric_limits<std::int64_t>::digits10 + 1;
  if (exponent < 0 || exponent > mostDigits) return std::nullopt;
  digits.append(static_cast<std::size_t>(exponent), '0');
  if (negative) digits.insert(0, 1, '-');
  std::int64_t value = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return parsed.ec == std::errc{} ? std::optional(value) : std::nullopt;
}

std::string shown(std::string_view text) {
  std::string line{text.substr(0, longestShown)};
  if (text.size() > longestShown) {
    constexpr auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    // A cut character would make the message invalid UTF-8. Of a character no more than three bytes can be in the way.
    for (int i = 0; i < 3 && isContinuation(text[line.size()]); ++i) line.pop_back();
    line += "...";
  }
  const unsigned char highest = simdjson::validate_utf8(line) ? 0xFF : 0x7E;
  for (char& c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F || byte > highest) c = '?';
  }
  return line;
}

}  // namespace orivex
