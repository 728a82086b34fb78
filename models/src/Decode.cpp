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

// What each `read` reads is taken from the text.

void read(JsonCursor& json, std::string& into) {
  expect(json, JsonType::string, "a string");
  into = json.takeString();
}

void read(JsonCursor& json, bool& into) {
  expect(json, JsonType::boolean, "a boolean");
  into = json.takeBoolean();
}

template <class Number>
Number readNumber(JsonCursor& json, std::optional<Number> parse(std::string_view), std::string_view expected) {
  const std::string_view text = json.takeNumber();
  const auto number = parse(text);
  if (!number) throw JsonFault(mismatch(expected, shown(text)));
  return *number;
}

void read(JsonCursor& json, std::int64_t& into) {
  constexpr std::string_view what = "a 64-bit integer";
  expect(json, JsonType::number, what);
  into = readNumber(json, wholeNumber, what);
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
  constexpr std::string_view what = "Base64 text";
  expect(json, JsonType::string, what);
  auto bytes = base64Decode(json.takeString());
  if (!bytes) throw JsonFault(mismatch(what, "other text"));
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
  json.takeObject([&](std::string_view key) { within(key, [&] { read(json, into[std::string(key)]); }); });
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

/// Reads the fields of a record as they come, whichever order that is.
template <HasFields Record>
class FieldReader {
 public:
  void readField(JsonCursor& json, std::string_view key, Record& into) {
    static constexpr auto readers = readersInOrder();
    const std::size_t at = positionOf(key);
    if (at == readers.size() || !readers[at]) return json.skip();
    within(key, [&] { readers[at](json, into); });
    seen_[at] = true;
    next_ = at + 1;
  }

  void requireFields() const {
    forEachField<Record>([&](auto at) {
      constexpr auto& field = std::get<at>(fieldsOf<Record>);
      if (field.presence == Presence::required && !seen_[at]) {
        within(field.key, [] { throw JsonFault("required, but missing"); });
      }
    });
  }

 private:
  using ReadMember = void (*)(JsonCursor&, Record&);

  template <std::size_t position>
  static void readMember(JsonCursor& json, Record& into) {
    read(json, into.*std::get<position>(fieldsOf<Record>).member);
  }

  static constexpr auto keysInOrder() {
    std::array<std::string_view, fieldCount<Record>> keys{};
    forEachField<Record>([&](auto at) { keys[at] = std::get<at>(fieldsOf<Record>).key; });
    return keys;
  }

  static constexpr auto readersInOrder() {
    std::array<ReadMember, fieldCount<Record>> readers{};
    forEachField<Record>([&](auto at) { readers[at] = readMember<at>; });
    return readers;
  }

  /// The position of a key in the table, or the number of fields for a key that the record does not know. Keys mostly
  /// come in the order of the table.
  std::size_t positionOf(std::string_view key) const {
    static constexpr auto keys = keysInOrder();
    for (std::size_t i = next_; i < keys.size(); ++i) {
      if (keys[i] == key) return i;
    }
    for (std::size_t i = 0; i < next_; ++i) {
      if (keys[i] == key) return i;
    }
    return keys.size();
  }

  std::array<bool, fieldCount<Record>> seen_{};
  std::size_t next_ = 0;
};

template <HasFields Record>
void read(JsonCursor& json, Record& into) {
  expect(json, JsonType::object, "an object");
  FieldReader<Record> fields;
  json.takeObject([&](std::string_view key) { fields.readField(json, key, into); });
  fields.requireFields();
}

/// Whether a text is JSON is asked before what is wrong with a value in it.
void expectJson(std::string_view text) {
  JsonCursor json(text);
  json.skip();
  json.takeEnd();
}

}  // namespace

template <class Record>
Record decode(std::string_view text) {
  Record record{};
  try {
    JsonCursor json(text);
    read(json, record);
    json.takeEnd();
  } catch (const JsonFault& fault) {
    expectJson(text);
    throw DecodingError(fault.line());
  }
  return record;
}

std::optional<std::string> decodeText(std::string_view text) {
  std::string decoded;
  try {
    JsonCursor json(text);
    read(json, decoded);
    json.takeEnd();
  } catch (const DecodingError&) {
    return std::nullopt;
  } catch (const JsonFault&) {
    return std::nullopt;
  }
  return decoded;
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
template incoming::MessageCustomFields decode(std::string_view);
template incoming::MessageCustomItems decode(std::string_view);
template incoming::MessageCustomMenus decode(std::string_view);
template incoming::MessageModel decode(std::string_view);

}  // namespace orivex
