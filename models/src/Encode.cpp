#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonWriter.h"
#include "Tables.h"

#include "orivex/models/Codec.h"

namespace orivex {
namespace {

/// Writes records by their tables, and what records are made of.
class RecordWriter {
 public:
  explicit RecordWriter(JsonWriter& json) : out(json) {}

  template <class Scalar>
  void write(const Scalar& value) {
    out.write(value);
  }

  template <HasFields Record>
  void write(const Record& record) {
    const std::size_t start = out.size();
    forEachField<Record>([&](auto at) { writeField<Record, at>(record); });
    out.enclose(start, '{', '}');
  }

  template <HasFields Record>
  void write(const std::vector<Record>& records) {
    writeArray(records);
  }

  void write(const std::vector<std::string>& texts) { writeArray(texts); }

  void write(const std::map<std::string, std::string>& pairs) {
    const std::size_t start = out.size();
    for (const auto& pair : pairs) {
      const std::string_view key = pair.first;
      within(key, [&] {
        out.literal(",");
        out.write(pair.first);
        out.literal(":");
        out.write(pair.second);
      });
    }
    out.enclose(start, '{', '}');
  }

 private:
  /// `,"key":` of a field. Keys need no escapes.
  template <class Record, std::size_t At>
  static consteval auto prefix() {
    constexpr std::string_view key = std::get<At>(fieldsOf<Record>).key;
    std::array<char, key.size() + 4> text{',', '"'};
    for (std::size_t i = 0; i < key.size(); ++i) text[i + 2] = key[i];
    text[key.size() + 2] = '"';
    text[key.size() + 3] = ':';
    return text;
  }

  template <class Record, std::size_t At>
  void writeField(const Record& record) {
    constexpr auto& field = std::get<At>(fieldsOf<Record>);
    static constexpr auto text = prefix<Record, At>();
    const auto write = [&](const auto& value) {
      out.literal({text.data(), text.size()});
      within(field.key, [&] { this->write(value); });
    };
    const auto& member = record.*field.member;
    if constexpr (field.presence == Presence::required) {
      write(member);
    } else if (member) {
      write(*member);
    }
  }

  template <class Element>
  void writeArray(const std::vector<Element>& elements) {
    const std::size_t start = out.size();
    for (std::size_t i = 0; i < elements.size(); ++i) {
      out.literal(",");
      within(i, [&] { write(elements[i]); });
    }
    out.enclose(start, '[', ']');
  }

  /// Writes what lies under a key or an index, which an exception takes along.
  template <class Segment, class Write>
  static void within(Segment segment, Write&& write) {
    try {
      write();
    } catch (NotWritable& problem) {
      problem.path.prepend(segment);
      throw;
    }
  }

  JsonWriter& out;
};

}  // namespace

template <class Value>
std::string encode(const Value& value, std::string_view before, std::string_view after) {
  const JsonWriter::Lease writer;
  if (!before.empty()) (*writer).literal(before);
  try {
    RecordWriter(*writer).write(value);
  } catch (const NotWritable& problem) {
    throw EncodingError(problem.path.with(problem.what()));
  }
  if (!after.empty()) (*writer).literal(after);
  return std::string((*writer).text());
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
