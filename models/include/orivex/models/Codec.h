#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orivex {

/// A JSON text that is not the record asked for. `what()` is one line. It leads with the path of the value at fault and
/// says what was found there ("messageBody.customItems[2].customMenus: expected an array, found a string"), or tells
/// where the text stops being JSON ("malformed JSON at byte 17: a comma or closing bracket is missing").
class DecodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A record that JSON cannot hold. `what()` is one line: the path of the field at fault and why
/// ("messageBody.width: not a finite number").
class EncodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads one record out of a JSON text, which must be exactly one JSON object in UTF-8, at most 512 levels deep.
///
/// A key that is missing or null leaves its field absent; one that the record requires must be there. A value of
/// another JSON type than the field's, an integer with a fraction or outside 64 bits, and text in a bytes field that is
/// not padded Base64 fail the whole record. Keys that the record does not know are skipped, but must hold JSON. Of a
/// key that comes twice the last one counts.
///
/// Defined for every record of this folder. May be called on any thread.
/// @throws DecodingError; there is no partial result.
template <class Record>
Record decode(std::string_view json);

/// The string that a JSON text consists of; nothing when it is anything else. May be called on any thread.
std::optional<std::string> decodeText(std::string_view json);

/// Writes a record, or a vector of `UploadFileInfoModel`, as JSON in UTF-8: the keys in the record's order, absent
/// fields left out, bytes as padded Base64, numbers in the fewest digits that read back the same, no blanks, `/` as it
/// is. `before` and `after` stand around it as they are, so that a script made of megabytes is put together once.
///
/// Defined for every record of this folder except those of `orivex::incoming`. May be called on any thread.
/// @throws EncodingError for a number that is not finite and for text that is not UTF-8.
template <class Value>
std::string encode(const Value& value, std::string_view before = {}, std::string_view after = {});

}  // namespace orivex
