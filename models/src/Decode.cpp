#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "JsonReader.h"
#include "KeyIndex.h"
#include "Tables.h"

#include "orivex/models/Codec.h"

namespace orivex {
namespace {

/// Reads records by their tables, and what records are made of. Every `read` keeps the promise of `JsonReader`.
class RecordReader : public JsonReader {
 public:
  using JsonReader::JsonReader;
  using JsonReader::read;

  template <HasFields Record>
  bool readRecord(Record& record) {
    Fields<Record> fields;
    const auto onField = [&](std::string_view key, JsonValue& value) { readField(fields, key, value, record); };
    return readDocument(onField) && settle(fields);
  }

  template <HasFields Record>
  bool read(JsonValue& value, Record& into) {
    Fields<Record> fields;
    const auto onField = [&](std::string_view key, JsonValue& field) { readField(fields, key, field, into); };
    return readObject(value, onField) && settle(fields);
  }

  template <class Element>
  bool read(JsonValue& value, std::vector<Element>& into) {
    std::optional<Mismatch> first;
    const auto onSize = [&](std::size_t size) { into.reserve(size); };
    const auto onElement = [&](std::size_t index, JsonValue& element) {
      if (first) return skip(element);
      if (read(element, into.emplace_back())) return;
      mismatch.path.prepend(index);
      first = std::move(mismatch);
    };
    const bool isArray = readArray(value, onSize, onElement);
    if (first) mismatch = std::move(*first);
    return isArray && !first;
  }

  template <class Value>
  bool read(JsonValue& value, std::map<std::string, Value>& into) {
    std::map<std::string, Mismatch> mismatches;
    const bool isObject = readObject(value, [&](std::string_view found, JsonValue& element) {
      std::string key{found};
      Value& mapped = into[key];
      if (read(element, mapped)) {
        mismatches.erase(key);
        return;
      }
      mismatch.path.prepend(key);
      mismatches.insert_or_assign(std::move(key), std::move(mismatch));
    });
    if (!mismatches.empty()) mismatch = std::move(mismatches.begin()->second);
    return isObject && mismatches.empty();
  }

 private:
  /// How far a record has come.
  template <class Record>
  struct Fields {
    static_assert(fieldCount<Record> <= 64);

    std::uint64_t seen = 0;                        ///< a bit per field
    std::map<std::size_t, Mismatch> mismatches{};  ///< by field: a later value of the same key may mend it
  };

  template <class Record>
  using ReadMember = bool (*)(RecordReader&, JsonValue&, Record&);

  /// What reads each field of the record, by its position in the table.
  template <class Record>
  static consteval auto memberReaders() {
    std::array<ReadMember<Record>, fieldCount<Record>> readers{};
    forEachField<Record>([&](auto at) { readers[at] = readMemberAt<Record, at>; });
    return readers;
  }

  template <class Record, std::size_t At>
  static bool readMemberAt(RecordReader& reader, JsonValue& value, Record& record) {
    return reader.readMember(value, record.*std::get<At>(fieldsOf<Record>).member);
  }

  template <class Record>
  void readField(Fields<Record>& fields, std::string_view key, JsonValue& value, Record& record) {
    static constexpr KeyIndex<Record> index;
    static constexpr auto readers = memberReaders<Record>();
    const std::size_t at = index.find(key);
    if (at == index.notFound) return skip(value);
    fields.seen |= std::uint64_t{1} << at;
    if (readers[at](*this, value, record)) [[likely]] {
      if (!fields.mismatches.empty()) fields.mismatches.erase(at);
      return;
    }
    fields.mismatches.insert_or_assign(at, std::move(mismatch));
  }

  template <class Value>
  bool readMember(JsonValue& value, std::optional<Value>& member) {
    if (takeNull(value)) {
      member.reset();
      return true;
    }
    return read(value, member.emplace());
  }

  template <class Value>
  bool readMember(JsonValue& value, std::shared_ptr<Value>& member) {
    member.reset();
    if (takeNull(value)) return true;
    member = std::make_shared<Value>();
    return read(value, *member);
  }

  template <class Value>
  bool readMember(JsonValue& value, Value& member) {
    return read(value, member);
  }

  /// Whether the record is whole. If not, leaves the fault of the first field in table order.
  template <class Record>
  bool settle(Fields<Record>& fields) {
    forEachField<Record>([&](auto at) {
      constexpr auto& field = std::get<at>(fieldsOf<Record>);
      if constexpr (field.presence == Presence::required) {
        if ((fields.seen >> at & 1U) == 0) fields.mismatches[at] = {{}, "required, but missing"};
      }
      const auto fault = fields.mismatches.find(at);
      if (fault != fields.mismatches.end()) fault->second.path.prepend(field.key);
    });
    if (fields.mismatches.empty()) [[likely]]
      return true;
    mismatch = std::move(fields.mismatches.begin()->second);
    return false;
  }
};

}  // namespace

template <class Record>
Record decode(std::string_view json) {
  RecordReader reader(json);
  Record record{};
  if (!reader.readRecord(record)) throw DecodingError(reader.mismatch.path.with(reader.mismatch.problem));
  return record;
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
