#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "JsonCursor.h"
#include "JsonFault.h"
#include "JsonText.h"
#include "Tables.h"

#include "orivex/models/Base64.h"
#include "orivex/models/Codec.h"

namespace orivex {
namespace {

std::string mismatch(std::string_view expected, std::string_view found) {
  return "expected " + std::string(expected) + ", found " + std::string(found);
}

void expect(const JsonCursor& json, JsonType type, std::string_view what) {
  if (json.type() != type) throw JsonFault(mismatch(what, nameOf(json.type())));
}

template <class Number>
Number readNumber(JsonCursor& json, std::optional<Number> parse(std::string_view), std::string_view what) {
  const std::string_view text = json.takeNumber();
  const auto number = parse(text);
  if (!number) throw JsonFault(mismatch(what, printable(text)));
  return *number;
}

// One `read` for each type that a record holds; it takes the value that it reads.

void read(JsonCursor& json, std::string& into) {
  expect(json, JsonType::string, "a string");
  json.takeString(into);
}

void read(JsonCursor& json, bool& into) {
  expect(json, JsonType::boolean, "a boolean");
  into = json.takeBoolean();
}

void read(JsonCursor& json, std::int64_t& into) {
  expect(json, JsonType::number, "a 64-bit integer");
  into = readNumber(json, wholeNumber, "a 64-bit integer");
}

void read(JsonCursor& json, double& into) {
  expect(json, JsonType::number, "a number");
  into = readNumber(json, floatingNumber<double>, "a number of double precision");
}

void read(JsonCursor& json, float& into) {
  expect(json, JsonType::number, "a number");
  into = readNumber(json, floatingNumber<float>, "a number of single precision");
}

void read(JsonCursor& json, Bytes& into) {
  expect(json, JsonType::string, "Base64 text");
  std::string text;
  json.takeString(text);
  auto bytes = base64Decode(text);
  if (!bytes) throw JsonFault(mismatch("Base64 text", "other text"));
  into = std::move(*bytes);
}

template <HasFields Record>
void read(JsonCursor& json, Record& into);

template <class Element>
void read(JsonCursor& json, std::vector<Element>& into) {
  expect(json, JsonType::array, "an array");
  json.takeArray([&](std::size_t index) { within(index, [&] { read(json, into.emplace_back()); }); });
}

void read(JsonCursor& json, std::map<std::string, std::string>& into) {
  expect(json, JsonType::object, "an object");
  json.takeObject([&](const std::string& key) { within(key, [&] { read(json, into[key]); }); });
}

template <class Value>
void read(JsonCursor& json, std::optional<Value>& into) {
  into.reset();
  if (json.type() == JsonType::null) return json.skip();
  read(json, into.emplace());
}

template <class Value>
void read(JsonCursor& json, std::shared_ptr<Value>& into) {
  into.reset();
  if (json.type() == JsonType::null) return json.skip();
  into = std::make_shared<Value>();
  read(json, *into);
}

template <HasFields Record>
void read(JsonCursor& json, Record& into) {
  expect(json, JsonType::object, "an object");
  std::array<bool, fieldCount<Record>> isRead{};
  json.takeObject([&](const std::string& key) {
    bool isKnown = false;
    std::size_t position = 0;
    forEachField<Record>([&](const auto& field) {
      if (field.key == key) {
        within(key, [&] { read(json, into.*field.member); });
        isKnown = isRead[position] = true;
      }
      ++position;
    });
    if (!isKnown) json.skip();
  });
  std::size_t position = 0;
  forEachField<Record>([&](const auto& field) {
    if (isRead[position++] || !field.isRequired) return;
    within(field.key, [] { throw JsonFault("required, but missing"); });
  });
}

/// Whether a text is JSON is asked before what is wrong with a value in it.
void expectJson(std::string_view text) {
  JsonCursor json(text);
  json.skip();
  json.takeEnd();
}

}  // namespace

template <class Value>
Value decode(std::string_view text) {
  Value value{};
  try {
    JsonCursor json(text);
    read(json, value);
    json.takeEnd();
  } catch (const JsonFault& fault) {
    expectJson(text);
    throw DecodingError(fault.line());
  }
  return value;
}

std::optional<std::string> decodeText(std::string_view text) {
  try {
    return decode<std::string>(text);
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

MessageBody MessageBody::fromJsonString(std::string_view json) {
  return decode<MessageBody>(json);
}

template FailModel decode(std::string_view);
template MessageBody decode(std::string_view);
template MessageCustomFields decode(std::string_view);
template MessageCustomItems decode(std::string_view);
template MessageCustomMenus decode(std::string_view);
template MessageModel decode(std::string_view);
template PostMessageModel decode(std::string_view);
template ShortcutsModel decode(std::string_view);
template TrackModel decode(std::string_view);
template UploadFileInfoModel decode(std::string_view);
template UploadResposeModel decode(std::string_view);
template UserMappingModel decode(std::string_view);
template WebViewEnvModel decode(std::string_view);
template incoming::MessageBody decode(std::string_view);
template incoming::MessageCustomItems decode(std::string_view);
template incoming::MessageModel decode(std::string_view);

}  // namespace orivex
