#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <simdjson.h>

#include "JsonFault.h"
#include "JsonText.h"
#include "Tables.h"

#include "orivex/models/Base64.h"
#include "orivex/models/Codec.h"

namespace orivex {
namespace {

template <class Number, class... Format>
void appendNumber(std::string& out, Number number, Format... format) {
  constexpr std::size_t longestNumber = 40;
  char text[longestNumber];
  out.append(text, std::to_chars(text, text + longestNumber, number, format...).ptr);
}

template <class Float>
void appendFloating(std::string& out, Float number) {
  if (!std::isfinite(number)) throw JsonFault("not a finite number");
  // The shortest text of 100000 would be 1e+05: plain digits are kept for what people count and measure.
  constexpr auto everyWholeBelow = static_cast<Float>(std::int64_t{1} << std::numeric_limits<Float>::digits);
  constexpr auto smallestPlain = static_cast<Float>(1e-4);
  const Float magnitude = std::abs(number);
  if (number == Float{0} || (magnitude >= smallestPlain && magnitude < everyWholeBelow)) {
    appendNumber(out, number, std::chars_format::fixed);
  } else {
    appendNumber(out, number);
  }
}

void appendEscape(std::string& out, char c) {
  constexpr std::string_view characters = "\"\\\b\t\n\f\r";
  constexpr std::string_view letters = R"("\btnfr)";
  constexpr std::string_view hexDigits = "0123456789abcdef";
  out += '\\';
  if (const std::size_t at = characters.find(c); at != std::string_view::npos) {
    out += letters[at];
  } else {
    out += "u00";
    out += hexDigits[static_cast<unsigned char>(c) >> 4U];
    out += hexDigits[static_cast<unsigned char>(c) & 0xFU];
  }
}

// One `write` for each type that a record holds.

void write(std::string& out, const std::string& text) {
  out += '"';
  std::string_view rest = text;
  while (true) {
    const std::size_t plain = plainLength(rest);
    out += rest.substr(0, plain);
    if (plain == rest.size()) break;
    appendEscape(out, rest[plain]);
    rest.remove_prefix(plain + 1);
  }
  out += '"';
  if (!simdjson::validate_utf8(text)) throw JsonFault("not UTF-8 text");
}

void write(std::string& out, bool value) {
  out += value ? "true" : "false";
}

void write(std::string& out, std::int64_t number) {
  appendNumber(out, number);
}

void write(std::string& out, double number) {
  appendFloating(out, number);
}

void write(std::string& out, float number) {
  appendFloating(out, number);
}

void write(std::string& out, const Bytes& bytes) {
  out += '"';
  appendBase64(out, bytes);
  out += '"';
}

template <HasFields Record>
void write(std::string& out, const Record& record);

template <class Element>
void write(std::string& out, const std::vector<Element>& elements) {
  out += '[';
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (i > 0) out += ',';
    within(i, [&] { write(out, elements[i]); });
  }
  out += ']';
}

void write(std::string& out, const std::map<std::string, std::string>& pairs) {
  out += '{';
  for (const auto& pair : pairs) {
    if (out.back() != '{') out += ',';
    within(pair.first, [&] {
      write(out, pair.first);
      out += ':';
      write(out, pair.second);
    });
  }
  out += '}';
}

template <class Value>
requires canBeAbsent<Value>
void write(std::string& out, const Value& present) {
  write(out, *present);
}

template <HasFields Record>
void write(std::string& out, const Record& record) {
  out += '{';
  forEachField<Record>([&](const auto& field) {
    const auto& value = record.*field.member;
    if constexpr (canBeAbsent<std::remove_cvref_t<decltype(value)>>) {
      if (!value) return;
    }
    if (out.back() != '{') out += ',';
    out += '"';
    out += field.key;
    out += "\":";
    within(field.key, [&] { write(out, value); });
  });
  out += '}';
}

/// The bytes that the texts of a value take as JSON, roughly: megabytes of photos are to be put together without being
/// moved.
template <class Value>
std::size_t textSize(const Value& value) {
  std::size_t size = 0;
  if constexpr (HasFields<Value>) {
    forEachField<Value>([&](const auto& field) { size += field.key.size() + textSize(value.*field.member); });
  } else if constexpr (canBeAbsent<Value>) {
    if (value) size = textSize(*value);
  } else if constexpr (std::is_same_v<Value, std::string>) {
    size = value.size();
  } else if constexpr (std::is_same_v<Value, Bytes>) {
    size = value.size() / 3 * 4;
  } else if constexpr (requires { value.front(); }) {
    for (const auto& element : value) size += textSize(element);
  }
  return size + 8;  // punctuation, or a number
}

template <class Value>
std::optional<std::string> encodeOrNothing(const Value& value) {
  try {
    return encode(value);
  } catch (const EncodingError&) {
    return std::nullopt;
  }
}

}  // namespace

template <class Value>
std::string encode(const Value& value, std::string_view before, std::string_view after) {
  std::string json;
  json.reserve(before.size() + textSize(value) + after.size());
  json = before;
  try {
    write(json, value);
  } catch (const JsonFault& fault) {
    throw EncodingError(fault.line());
  }
  json += after;
  return json;
}

std::string MessageBody::getJsonString() const {
  return encodeOrNothing(*this).value_or("");
}

std::string MessageModel::getJsonString() const {
  return encodeOrNothing(*this).value_or("");
}

std::string WebViewEnvModel::getJsonString() const {
  return encodeOrNothing(*this).value_or("");
}

std::optional<std::string> UserMappingModel::getJsonString() const {
  return encodeOrNothing(*this);
}

template std::string encode(const FailModel&, std::string_view, std::string_view);
template std::string encode(const MessageBody&, std::string_view, std::string_view);
template std::string encode(const MessageCustomFields&, std::string_view, std::string_view);
template std::string encode(const MessageCustomItems&, std::string_view, std::string_view);
template std::string encode(const MessageCustomMenus&, std::string_view, std::string_view);
template std::string encode(const MessageModel&, std::string_view, std::string_view);
template std::string encode(const PostMessageModel&, std::string_view, std::string_view);
template std::string encode(const ShortcutsModel&, std::string_view, std::string_view);
template std::string encode(const TrackModel&, std::string_view, std::string_view);
template std::string encode(const UploadFileInfoModel&, std::string_view, std::string_view);
template std::string encode(const UploadResposeModel&, std::string_view, std::string_view);
template std::string encode(const UserMappingModel&, std::string_view, std::string_view);
template std::string encode(const WebViewEnvModel&, std::string_view, std::string_view);
template std::string encode(const std::vector<UploadFileInfoModel>&, std::string_view, std::string_view);

}  // namespace orivex
