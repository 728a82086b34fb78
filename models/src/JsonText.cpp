#include "JsonText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace orivex {
namespace {

constexpr unsigned char isSpecial(unsigned char c) {
  return (c < 0x20) | (c == '"') | (c == '\\');
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Takes the digits at the head of a text off it and tells how many there were.
std::size_t takeDigits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && isDigit(text[count])) ++count;
  text.remove_prefix(count);
  return count;
}

bool takeOne(std::string_view& text, std::string_view anyOf) {
  if (text.empty() || anyOf.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

constexpr std::size_t codeUnitLength = 6;

/// The UTF-16 code unit that a text begins with as "\uXXXX".
std::optional<char32_t> codeUnit(std::string_view text) {
  if (text.size() < codeUnitLength || !text.starts_with("\\u")) return std::nullopt;
  std::uint16_t unit = 0;
  const char* const end = text.data() + codeUnitLength;
  if (std::from_chars(text.data() + 2, end, unit, 16).ptr != end) return std::nullopt;
  return unit;
}

bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void appendUtf8(std::string& text, char32_t point) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (point < 0x80) return append(point);
  constexpr std::array<char32_t, 4> firstBytes{0, 0xC0, 0xE0, 0xF0};
  unsigned more = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  append(firstBytes[more] | point >> 6 * more);
  while (more-- > 0) append(0x80 | (point >> 6 * more & 0x3F));
}

}  // namespace

std::size_t plainLength(std::string_view text) {
  const auto at = [text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  std::size_t length = 0;
  // Whole blocks in a form of which compilers make vector instructions: photos are megabytes of plain text.
  constexpr std::size_t blockSize = 32;
  for (; length + blockSize <= text.size(); length += blockSize) {
    unsigned char special = 0;
    for (std::size_t i = 0; i < blockSize; ++i) special |= isSpecial(at(length + i));
    if (special != 0) break;
  }
  while (length < text.size() && !isSpecial(at(length))) ++length;
  return length;
}

std::size_t appendUnescaped(std::string& text, std::string_view json) {
  constexpr std::string_view letters = R"("\/bfnrt)";
  constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
  const std::size_t letter = json.size() < 2 ? std::string_view::npos : letters.find(json[1]);
  if (letter != std::string_view::npos) {
    text += meanings[letter];
    return 2;
  }
  const auto unit = codeUnit(json);
  if (!unit || isLowSurrogate(*unit)) return 0;
  if (!isHighSurrogate(*unit)) {
    appendUtf8(text, *unit);
    return codeUnitLength;
  }
  const auto low = codeUnit(json.substr(codeUnitLength));
  if (!low || !isLowSurrogate(*low)) return 0;
  appendUtf8(text, 0x10000 + ((*unit - 0xD800) << 10U) + (*low - 0xDC00));
  return 2 * codeUnitLength;
}

std::size_t numberLength(std::string_view text) {
  constexpr std::string_view marks = "-+.eE";
  std::size_t length = 0;
  while (length < text.size() && (isDigit(text[length]) || marks.find(text[length]) != std::string_view::npos))
    ++length;
  return length;
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

}  // namespace orivex
