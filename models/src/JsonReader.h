#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <simdjson.h>

#include "DecodeWorkspace.h"
#include "JsonPath.h"

#include "orivex/models/Bytes.h"

namespace orivex {

using JsonValue = simdjson::ondemand::value;

/// A value that is JSON, but not of the type asked for.
struct Mismatch {
  JsonPath path;        ///< from the value being read down to the one at fault
  std::string problem;  ///< what was expected and what was found
};

/// Reads JSON values from one text, front to back, and checks on the way that all of it is JSON: the parser itself
/// looks only at what it is asked for.
///
/// A `read` either consumes a value of the right type and returns true, or consumes a value of another type, leaves the
/// reason in `mismatch` and returns false. The caller goes on in both cases: what follows may be malformed, or the same
/// key may come again. Text that is not JSON throws `DecodingError` at once.
class JsonReader {
 public:
  explicit JsonReader(std::string_view json);

  bool read(JsonValue& value, std::string& into);
  bool read(JsonValue& value, std::int64_t& into);
  bool read(JsonValue& value, double& into);
  bool read(JsonValue& value, float& into);
  bool read(JsonValue& value, bool& into);
  bool read(JsonValue& value, Bytes& into);

  /// Whether the value is null; if so, it is consumed.
  bool takeNull(JsonValue& value) { return typeOf(value) == Type::null && skipNull(value); }

  /// Consumes a value of any type.
  void skip(JsonValue& value);

  /// Opens the document if it is an object and calls `onField(key, value)` for each of its fields. The value has to be
  /// consumed; the key is gone with the next read.
  template <class OnField>
  bool readDocument(OnField&& onField);

  /// The same for an object within the document.
  template <class OnField>
  bool readObject(JsonValue& value, OnField&& onField);

  /// Calls `onSize(size)` and then `onElement(index, value)` for each element of an array. Counting the elements steps
  /// over all of them once more, so it is for arrays whose depth a record limits.
  template <class OnSize, class OnElement>
  bool readArray(JsonValue& value, OnSize&& onSize, OnElement&& onElement);

  /// The text of a document that is one string; nothing if it is of another type.
  std::optional<std::string> textDocument();

  Mismatch mismatch;

 private:
  using Type = simdjson::ondemand::json_type;

  static constexpr int deepestLevel = 512;

  bool expect(JsonValue& value, Type type, std::string_view what) {
    const Type found = typeOf(value);
    return found == type || skipOther(value, found, what);
  }
  Type typeOf(JsonValue& value) {
    Type type{};
    if (value.type().get(type) != simdjson::SUCCESS) [[unlikely]]
      malformed("not a value");
    return type;
  }
  bool skipNull(JsonValue& value);
  bool skipOther(JsonValue& value, Type found, std::string_view expected);
  std::string_view text(JsonValue& string);
  std::string_view number(JsonValue& value);
  bool mismatched(std::string_view expected, std::string_view found);
  std::string_view keyOf(simdjson::ondemand::field& field);
  void skipArray(JsonValue& value);
  bool openDocument(simdjson::ondemand::object& object);
  std::string_view scalarDocument();
  void skipScalarDocument(Type type);
  void closeDocument();
  void enter();
  template <class OnField>
  void eachField(simdjson::ondemand::object& object, OnField&& onField);
  template <class OnElement>
  void eachElement(simdjson::ondemand::array& array, OnElement&& onElement);

  void check(simdjson::error_code error) {
    if (error != simdjson::SUCCESS) [[unlikely]]
      fail(error);
  }
  [[noreturn]] void fail(simdjson::error_code error);
  [[noreturn]] void malformed(std::string_view reason);

  DecodeWorkspace::Lease workspace;
  std::size_t length;
  simdjson::ondemand::document document;
  bool isOpen = false;
  int level = 0;
};

template <class OnField>
bool JsonReader::readDocument(OnField&& onField) {
  simdjson::ondemand::object object;
  if (!openDocument(object)) return false;
  eachField(object, onField);
  closeDocument();
  return true;
}

template <class OnField>
bool JsonReader::readObject(JsonValue& value, OnField&& onField) {
  if (!expect(value, Type::object, "an object")) return false;
  simdjson::ondemand::object object;
  check(value.get_object().get(object));
  eachField(object, onField);
  return true;
}

template <class OnSize, class OnElement>
bool JsonReader::readArray(JsonValue& value, OnSize&& onSize, OnElement&& onElement) {
  if (!expect(value, Type::array, "an array")) return false;
  simdjson::ondemand::array array;
  check(value.get_array().get(array));
  std::size_t size = 0;
  check(array.count_elements().get(size));
  onSize(size);
  eachElement(array, onElement);
  return true;
}

template <class OnField>
void JsonReader::eachField(simdjson::ondemand::object& object, OnField&& onField) {
  enter();
  for (auto next : object) {
    simdjson::ondemand::field field;
    check(std::move(next).get(field));
    const std::string_view key = keyOf(field);
    onField(key, field.value());
  }
  --level;
}

template <class OnElement>
void JsonReader::eachElement(simdjson::ondemand::array& array, OnElement&& onElement) {
  enter();
  std::size_t index = 0;
  for (auto next : array) {
    JsonValue value;
    check(std::move(next).get(value));
    onElement(index++, value);
  }
  --level;
}

}  // namespace orivex
