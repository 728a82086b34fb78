#include "JsonReader.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "JsonText.h"

#include "orivex/models/Base64.h"
#include "orivex/models/Codec.h"

namespace orivex {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view badNumber = "a bad number";
constexpr std::string_view trailingText = "something follows its end";
constexpr std::string_view unknownWord = "an unknown word";

std::string_view nameOf(simdjson::ondemand::json_type type) {
  using Type = simdjson::ondemand::json_type;
  switch (type) {
    case Type::object:
      return "an object";
    case Type::array:
      return "an array";
    case Type::string:
      return "a string";
    case Type::number:
      return "a number";
    case Type::boolean:
      return "a boolean";
    case Type::null:
      return "null";
  }
  return "something else";
}

std::string_view reasonOf(simdjson::error_code error) {
  switch (error) {
    case simdjson::EMPTY:
      return "there is no text";
    case simdjson::UTF8_ERROR:
      return "invalid UTF-8";
    case simdjson::UNCLOSED_STRING:
      return "a string without an end";
    case simdjson::UNESCAPED_CHARS:
      return "a control character in a string";
    case simdjson::STRING_ERROR:
      return "a bad escape in a string";
    case simdjson::CAPACITY:
    case simdjson::MEMALLOC:
      return "too large";
    case simdjson::INCOMPLETE_ARRAY_OR_OBJECT:
      return "its last bracket is missing, or something follows it";
    default:
      return "missing or misplaced comma, colon, bracket or key";
  }
}

std::string_view withoutBlanks(std::string_view token) {
  while (!token.empty() && std::string_view(" \t\r\n").find(token.back()) != std::string_view::npos) {
    token.remove_suffix(1);
  }
  return token;
}

}  // namespace

JsonReader::JsonReader(std::string_view json) : length(json.size()) {
  if (json.starts_with(byteOrderMark)) malformed("it begins with a byte order mark");
  check(workspace->parse(json).get(document));
}

bool JsonReader::read(JsonValue& value, std::string& into) {
  if (!expect(value, Type::string, "a string")) return false;
  into = std::string(text(value));
  return true;
}

bool JsonReader::read(JsonValue& value, std::int64_t& into) {
  if (value.get_int64().get(into) == simdjson::SUCCESS) [[likely]]
    return true;
  constexpr std::string_view expected = "a 64-bit integer";
  if (!expect(value, Type::number, expected)) return false;
  const std::string_view written = number(value);
  const auto whole = wholeNumber(written);
  if (!whole) return mismatched(expected, shown(written));
  into = *whole;
  return true;
}

bool JsonReader::read(JsonValue& value, double& into) {
  if (value.get_double().get(into) == simdjson::SUCCESS) [[likely]]
    return true;
  constexpr std::string_view expected = "a number";
  return expect(value, Type::number, expected) && mismatched("a number of double precision", shown(number(value)));
}

bool JsonReader::read(JsonValue& value, float& into) {
  if (!expect(value, Type::number, "a number")) return false;
  const std::string_view written = number(value);
  // Straight from the text: by way of a double it would be rounded twice.
  const auto parsed = std::from_chars(written.data(), written.data() + written.size(), into);
  if (parsed.ec == std::errc{}) return true;
  // Out of range is also said of what is too small to tell from zero, which is no fault.
  double wide = 0;
  if (value.get_double().get(wide) != simdjson::SUCCESS || std::abs(wide) >= 1) {
    return mismatched("a number of single precision", shown(written));
  }
  into = static_cast<float>(wide);
  return true;
}

bool JsonReader::read(JsonValue& value, bool& into) {
  if (!expect(value, Type::boolean, "a boolean")) return false;
  if (value.get_bool().get(into) != simdjson::SUCCESS) malformed(unknownWord);
  return true;
}

bool JsonReader::read(JsonValue& value, Bytes& into) {
  constexpr std::string_view expected = "Base64 text";
  if (!expect(value, Type::string, expected)) return false;
  auto bytes = base64Decode(text(value));
  if (!bytes) {
    return mismatched(expected, "other text");
  }
  into = std::move(*bytes);
  return true;
}

void JsonReader::skipArray(JsonValue& value) {
  simdjson::ondemand::array array;
  check(value.get_array().get(array));
  eachElement(array, [this](std::size_t, JsonValue& element) { skip(element); });
}

bool JsonReader::skipNull(JsonValue& value) {
  bool isNull = false;
  if (value.is_null().get(isNull) != simdjson::SUCCESS || !isNull) malformed(unknownWord);
  return true;
}

void JsonReader::skip(JsonValue& value) {
  switch (typeOf(value)) {
    case Type::object:
      readObject(value, [this](std::string_view, JsonValue& field) { skip(field); });
      break;
    case Type::array:
      skipArray(value);
      break;
    case Type::string:
      text(value);
      break;
    case Type::number:
      number(value);
      break;
    case Type::boolean: {
      bool ignored = false;
      read(value, ignored);
      break;
    }
    case Type::null:
      skipNull(value);
      break;
  }
}

/// Consumes a value that is of another type than expected, and says so.
bool JsonReader::skipOther(JsonValue& value, Type found, std::string_view expected) {
  skip(value);
  return mismatched(expected, nameOf(found));
}

/// The text of a string, without its escapes. It lies in the parser's memory.
std::string_view JsonReader::text(JsonValue& string) {
  std::string_view raw = string.raw_json_token();
  while (raw.back() != '"') raw.remove_suffix(1);
  raw = raw.substr(1, raw.size() - 2);
  if (raw.find('\\') == std::string_view::npos) [[likely]] {
    simdjson::ondemand::raw_json_string consumed;
    check(string.get_raw_json_string().get(consumed));
    return raw;
  }
  std::string_view unescaped;
  check(string.get_string().get(unescaped));
  return unescaped;
}

/// The text of a number. The value counts as consumed: the parser steps over a scalar that was only looked at.
std::string_view JsonReader::number(JsonValue& value) {
  const std::string_view written = withoutBlanks(value.raw_json_token());
  if (!isJsonNumber(written)) malformed(badNumber);
  return written;
}

bool JsonReader::mismatched(std::string_view expected, std::string_view found) {
  mismatch.path = {};
  mismatch.problem = "expected ";
  mismatch.problem += expected;
  mismatch.problem += ", found ";
  mismatch.problem += found;
  return false;
}

std::string_view JsonReader::keyOf(simdjson::ondemand::field& field) {
  const char* const begin = field.key().raw();
  // Stage one of the parser has seen to it that the quote is there.
  const char* end = begin;
  while (*end != '"' && *end != '\\') ++end;
  if (*end == '"') [[likely]]
    return {begin, static_cast<std::size_t>(end - begin)};
  std::string_view unescaped;
  check(field.unescaped_key().get(unescaped));
  return unescaped;
}

bool JsonReader::openDocument(simdjson::ondemand::object& object) {
  Type type{};
  if (document.type().get(type) != simdjson::SUCCESS) malformed("not a value");
  if (type == Type::object) {
    check(document.get_object().get(object));
    isOpen = true;
    return true;
  }
  if (type == Type::array) {
    simdjson::ondemand::array array;
    check(document.get_array().get(array));
    isOpen = true;
    eachElement(array, [this](std::size_t, JsonValue& element) { skip(element); });
    closeDocument();
  } else {
    skipScalarDocument(type);
  }
  return mismatched("an object", nameOf(type));
}

/// The only token of a document that is neither object nor array.
std::string_view JsonReader::scalarDocument() {
  std::string_view token;
  check(document.raw_json_token().get(token));
  if (token.data() + token.size() != workspace->begin() + length) malformed(trailingText);
  return withoutBlanks(token);
}

void JsonReader::skipScalarDocument(Type type) {
  const std::string_view token = scalarDocument();
  if (type == Type::number && !isJsonNumber(token)) malformed(badNumber);
  if (type == Type::boolean && token != "true" && token != "false") malformed(unknownWord);
  if (type == Type::null && token != "null") malformed(unknownWord);
  if (type == Type::string) check(document.get_string().error());
}

std::optional<std::string> JsonReader::textDocument() {
  Type type{};
  if (document.type().get(type) != simdjson::SUCCESS || type != Type::string) return std::nullopt;
  scalarDocument();
  std::string_view text;
  check(document.get_string().get(text));
  return std::string(text);
}

void JsonReader::closeDocument() {
  if (document.current_location().error() != simdjson::OUT_OF_BOUNDS) malformed(trailingText);
}

void JsonReader::enter() {
  if (++level > deepestLevel) malformed("nested deeper than 512 levels");
}

void JsonReader::fail(simdjson::error_code error) {
  malformed(reasonOf(error));
}

void JsonReader::malformed(std::string_view reason) {
  std::string line = "malformed JSON";
  if (isOpen) {
    const char* at = nullptr;
    const bool isInside = document.current_location().get(at) == simdjson::SUCCESS;
    line += " near byte " + std::to_string(isInside ? at - workspace->begin() : std::ptrdiff_t(length));
  }
  line += ": ";
  line += reason;
  throw DecodingError(line);
}

}  // namespace orivex
