#include "JsonText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <simdjson.h>

namespace orivex {
namespace {

constexpr std::size_t longestShown = 40;

constexpr bool isPlain(char c) {
  return (static_cast<unsigned char>(c) >= 0x20) & (c != '"') & (c != '\\');
}

/// Takes the digits at the head of a text off it and tells how many there were.
std::size_t takeDigits(std::string_view& text) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count;
}

bool takeOne(std::string_view& text, std::string_view anyOf) {
  if (text.empty() || anyOf.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

/// Takes "\uXXXX" off the front of a text.
std::optional<char32_t> takeCodeUnit(std::string_view& text) {
  constexpr std::size_t length = 6;
  if (text.size() < length || !text.starts_with("\\u")) return std::nullopt;
  std::uint16_t unit = 0;
  const char* const end = text.data() + length;
  if (std::from_chars(text.data() + 2, end, unit, 16).ptr != end) return std::nullopt;
  text.remove_prefix(length);
  return unit;
}

void appendUtf8(std::string& text, char32_t point) {
  const auto byte = [&text](char32_t bits) { text += static_cast<char>(bits); };
  if (point < 0x80) return byte(point);
  if (point < 0x800) {
    byte(0xC0 | point >> 6U);
  } else {
    if (point < 0x10000) {
      byte(0xE0 | point >> 12U);
    } else {
      byte(0xF0 | point >> 18U);
      byte(0x80 | (point >> 12U & 0x3F));
    }
    byte(0x80 | (point >> 6U & 0x3F));
  }
  byte(0x80 | (point & 0x3F));
}

}  // namespace

std::size_t plainLength(std::string_view text) {
  std::size_t length = 0;
  // Whole blocks in a form of which compilers make vector instructions: photos are megabytes of plain text.
  constexpr std::size_t blockSize = 16;
  for (; length + blockSize <= text.size(); length += blockSize) {
    bool plain = true;
    for (std::size_t i = 0; i < blockSize; ++i) plain &= isPlain(text[length + i]);
    if (!plain) break;
  }
  while (length < text.size() && isPlain(text[length])) ++length;
  return length;
}

std::optional<char32_t> takeEscape(std::string_view& text) {
  if (const auto unit = takeCodeUnit(text)) {
    if (*unit < 0xD800 || *unit > 0xDFFF) return unit;
    const auto low = *unit < 0xDC00 ? takeCodeUnit(text) : std::nullopt;
    if (!low || *low < 0xDC00 || *low > 0xDFFF) return std::nullopt;
    return 0x10000 + ((*unit - 0xD800) << 10U) + (*low - 0xDC00);
  }
  constexpr std::string_view letters = R"("\/bfnrt)";
  constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
  const std::size_t at = text.size() < 2 ? std::string_view::npos : letters.find(text[1]);
  if (at == std::string_view::npos) return std::nullopt;
  text.remove_prefix(2);
  return static_cast<char32_t>(meanings[at]);
}

std::string unescaped(std::string_view raw) {
  std::size_t backslash = raw.find('\\');
  std::string text{raw.substr(0, backslash)};
  while (backslash != std::string_view::npos) {
    raw.remove_prefix(backslash);
    appendUtf8(text, takeEscape(raw).value());
    backslash = raw.find('\\');
    text += raw.substr(0, backslash);
  }
  return text;
}

bool isJsonNumber(std::string_view text) {
  takeOne(text, "-");
  if (!takeOne(text, "0") && takeDigits(text) == 0) return false;
  if (takeOne(text, ".") && takeDigits(text) == 0) return false;
  if (takeOne(text, "eE")) {
    takeOne(text, "+-");
    if (takeDigits(text) == 0) return false;
  }
  return text.empty();
}

std::optional<std::int64_t> wholeNumber(std::string_view number) {
  const char* const end = number.data() + number.size();
  std::int64_t whole = 0;
  if (const auto parsed = std::from_chars(number.data(), end, whole); parsed.ptr == end) {
    return parsed.ec == std::errc{} ? std::optional(whole) : std::nullopt;
  }
  // Written with a fraction or an exponent. This type holds every 64-bit integer.
  constexpr long double beyond = 9223372036854775808.0L;
  long double value = 0;
  if (std::from_chars(number.data(), end, value).ec != std::errc{}) return std::nullopt;
  if (value != std::trunc(value) || value < -beyond || value >= beyond) return std::nullopt;
  return static_cast<std::int64_t>(value);
}

template <class Float>
std::optional<Float> floatingNumber(std::string_view number) {
  Float value = 0;
  const auto parsed = std::from_chars(number.data(), number.data() + number.size(), value);
  if (parsed.ec == std::errc{}) return value;
  // Out of range is said of both ends of it.
  if (number.find("e-") == std::string_view::npos && number.find("E-") == std::string_view::npos) return std::nullopt;
  return number.front() == '-' ? -Float{0} : Float{0};
}

template std::optional<double> floatingNumber(std::string_view);
template std::optional<float> floatingNumber(std::string_view);

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
