#include "JsonCursor.h"

#include <simdjson.h>

#include "JsonText.h"

#include "orivex/models/Codec.h"

namespace orivex {

std::string_view nameOf(JsonType type) {
  switch (type) {
    case JsonType::object:
      return "an object";
    case JsonType::array:
      return "an array";
    case JsonType::string:
      return "a string";
    case JsonType::number:
      return "a number";
    case JsonType::boolean:
      return "a boolean";
    case JsonType::null:
      return "null";
  }
  return {};
}

JsonCursor::JsonCursor(std::string_view text) : begin_(text.data()), at_(begin_), end_(begin_ + text.size()) {
  if (text.starts_with("\xEF\xBB\xBF")) fail("it begins with a byte order mark");
  if (!simdjson::validate_utf8(text)) throw DecodingError("malformed JSON: invalid UTF-8");
  takeBlanks();
}

JsonType JsonCursor::type() const {
  if (at_ == end_) fail("a value is missing");
  switch (*at_) {
    case '{':
      return JsonType::object;
    case '[':
      return JsonType::array;
    case '"':
      return JsonType::string;
    case 't':
    case 'f':
      return JsonType::boolean;
    case 'n':
      return JsonType::null;
    default:
      return JsonType::number;
  }
}

void JsonCursor::takeString(std::string& into) {
  if (!takeOne('"')) fail("a key is missing");
  into.clear();
  while (true) {
    const std::size_t plain = plainLength(rest());
    into.append(at_, plain);
    at_ += plain;
    if (at_ == end_) fail("a string without an end");
    if (takeOne('"')) return;
    if (*at_ != '\\') fail("a control character in a string");
    const std::size_t escape = appendUnescaped(into, rest());
    if (escape == 0) fail("a bad escape in a string");
    at_ += escape;
  }
}

bool JsonCursor::takeBoolean() {
  const bool value = *at_ == 't';
  takeWord(value ? "true" : "false");
  return value;
}

std::string_view JsonCursor::takeNumber() {
  const std::string_view number = rest().substr(0, numberLength(rest()));
  if (number.empty()) fail("a value is missing");
  if (!isJsonNumber(number)) fail("a bad number");
  at_ += number.size();
  return number;
}

void JsonCursor::skip() {
  switch (type()) {
    case JsonType::object:
      return takeObject([this](const std::string&) { skip(); });
    case JsonType::array:
      return takeArray([this](std::size_t) { skip(); });
    case JsonType::string: {
      std::string skipped;
      return takeString(skipped);
    }
    case JsonType::number:
      takeNumber();
      break;
    case JsonType::boolean:
      takeBoolean();
      break;
    case JsonType::null:
      takeWord("null");
      break;
  }
}

void JsonCursor::takeEnd() {
  takeBlanks();
  if (at_ != end_) fail("something follows its end");
}

void JsonCursor::takeWord(std::string_view word) {
  if (!rest().starts_with(word)) fail("an unknown word");
  at_ += word.size();
}

bool JsonCursor::takeOne(char c) {
  if (at_ == end_ || *at_ != c) return false;
  ++at_;
  return true;
}

void JsonCursor::takeBlanks() {
  while (at_ != end_ && (*at_ == ' ' || *at_ == '\n' || *at_ == '\r' || *at_ == '\t')) ++at_;
}

void JsonCursor::takeColon() {
  takeBlanks();
  if (!takeOne(':')) fail("a colon is missing");
  takeBlanks();
}

void JsonCursor::fail(std::string_view reason) const {
  throw DecodingError("malformed JSON at byte " + std::to_string(at_ - begin_) + ": " + std::string(reason));
}

}  // namespace orivex
