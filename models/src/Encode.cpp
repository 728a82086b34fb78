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
#include <vector>

#include <simdjson.h>

#include "JsonFault.h"
#include "JsonText.h"
#include "Tables.h"

#include "orivex/models/Base64.h"
#include "orivex/models/Codec.h"

namespace orivex {
namespace {

constexpr std::size_t longestNumber = 40;

/// Roughly the bytes that a value takes as JSON, so that megabytes of photos are put together without being moved.
template <class Value>
std::size_t roughSize(const Value& value) {
  if constexpr (HasFields<Value>) {
    std::size_t size = 2;
    forEachField<Value>([&](auto at) {
      constexpr auto& field = std::get<at>(fieldsOf<Value>);
      size += field.key.size() + 4 + roughSize(value.*field.member);
    });
    return size;
  } else if constexpr (canBeAbsent<Value>) {
    return value ? roughSize(*value) : 0;
  } else if constexpr (std::is_arithmetic_v<Value>) {
    return sizeof(value);
  } else if constexpr (std::is_same_v<Value, std::string>) {
    return value.size() + 3;
  } else if constexpr (std::is_same_v<Value, Bytes>) {
    return base64Length(value.size()) + 2;
  } else {
    std::size_t size = 2;
    for (const auto& part : value) size += roughSize(part);
    return size;
  }
}

template <>
std::size_t roughSize(const std::map<std::string, std::string>::value_type& pair) {
  return roughSize(pair.first) + roughSize(pair.second) + 1;
}

bool isAscii(std::string_view text) {
  char bits = 0;
  for (const char c : text) bits |= c;
  return static_cast<unsigned char>(bits) < 0x80;
}

/// Writes records by their tables, and what records are made of.
class RecordWriter {
 public:
  explicit RecordWriter(std::string& out) : out_(out) {}

  void write(const std::string& text) {
    out_ += '"';
    std::string_view rest = text;
    while (true) {
      const std::size_t plain = plainLength(rest);
      out_ += rest.substr(0, plain);
      if (plain == rest.size()) break;
      escape(rest[plain]);
      rest.remove_prefix(plain + 1);
    }
    out_ += '"';
    if (!isAscii(text) && !simdjson::validate_utf8(text)) throw JsonFault("not UTF-8 text");
  }

  void write(std::int64_t number) { writeNumber(number); }
  void write(double number) { writeFloating(number); }
  void write(float number) { writeFloating(number); }
  void write(bool value) { out_ += value ? "true" : "false"; }

  void write(const Bytes& bytes) {
    const std::size_t start = out_.size() + 1;
    out_.resize(start + base64Length(bytes.size()) + 1, '"');
    out_[start - 1] = '"';
    base64Encode(bytes, out_.data() + start);
  }

  template <HasFields Record>
  void write(const Record& record) {
    out_ += '{';
    forEachField<Record>([&](auto at) {
      constexpr auto& field = std::get<at>(fieldsOf<Record>);
      writeField(field.key, record.*field.member);
    });
    out_ += '}';
  }

  template <class Element>
  void write(const std::vector<Element>& elements) {
    out_ += '[';
    for (std::size_t i = 0; i < elements.size(); ++i) {
      if (i > 0) out_ += ',';
      within(i, [&] { write(elements[i]); });
    }
    out_ += ']';
  }

  void write(const std::map<std::string, std::string>& pairs) {
    out_ += '{';
    for (const auto& [key, value] : pairs) {
      if (out_.back() != '{') out_ += ',';
      within(std::string_view(key), [&, &name = key, &text = value] {
        write(name);
        out_ += ':';
        write(text);
      });
    }
    out_ += '}';
  }

 private:
  template <class Value>
  void writeField(std::string_view key, const std::optional<Value>& value) {
    if (value) writeField(key, *value);
  }

  template <class Value>
  void writeField(std::string_view key, const std::shared_ptr<Value>& value) {
    if (value) writeField(key, *value);
  }

  template <class Value>
  void writeField(std::string_view key, const Value& value) {
    out_ += out_.back() == '{' ? "\"" : ",\"";
    out_ += key;
    out_ += "\":";
    within(key, [&] { write(value); });
  }

  void escape(char c) {
    constexpr std::string_view characters = "\"\\\b\t\n\f\r";
    constexpr std::string_view letters = R"("\btnfr)";
    constexpr std::string_view hexDigits = "0123456789abcdef";
    out_ += '\\';
    if (const std::size_t at = characters.find(c); at != std::string_view::npos) {
      out_ += letters[at];
    } else {
      out_ += "u00";
      out_ += hexDigits[static_cast<unsigned char>(c) >> 4U];
      out_ += hexDigits[static_cast<unsigned char>(c) & 0xFU];
    }
  }

  template <class Number, class... Format>
  void writeNumber(Number number, Format... format) {
    char text[longestNumber];
    out_.append(text, std::to_chars(text, text + longestNumber, number, format...).ptr);
  }

  template <class Float>
  void writeFloating(Float number) {
    if (!std::isfinite(number)) throw JsonFault("not a finite number");
    // The shortest text of 100000 would be 1e+05: plain digits are kept for what people count and measure.
    constexpr auto everyWholeBelow = static_cast<Float>(std::int64_t{1} << std::numeric_limits<Float>::digits);
    constexpr auto smallestPlain = static_cast<Float>(1e-4);
    const Float magnitude = std::abs(number);
    if (number == Float{0} || (magnitude >= smallestPlain && magnitude < everyWholeBelow)) {
      writeNumber(number, std::chars_format::fixed);
    } else {
      writeNumber(number);
    }
  }

  std::string& out_;
};

}  // namespace

template <class Value>
std::string encode(const Value& value, std::string_view before, std::string_view after) {
  std::string json;
  json.reserve(before.size() + roughSize(value) + after.size());
  json = before;
  try {
    RecordWriter(json).write(value);
  } catch (const JsonFault& fault) {
    throw EncodingError(fault.line());
  }
  return json += after;
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
