#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "Expect.h"
#include "JsonGrammar.h"

#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/PageModels.h"
#include "orivex/models/ShortcutsModel.h"
#include "orivex/models/UploadModels.h"
#include "orivex/models/UserMappingModel.h"

namespace orivex::fuzz {
namespace {

template <class Record>
concept DecodeOnly = std::is_same_v<Record, incoming::MessageModel> || std::is_same_v<Record, incoming::MessageBody> ||
    std::is_same_v<Record, incoming::MessageCustomItems>;

/// What was decoded is written and read again without a change.
template <class Record>
void expectSameAgain(const Record& record) {
  const std::string text = encode(record);
  expect(isJson(text), "what is written is JSON");
  const auto again = decode<Record>(text);
  expect(encode(again) == text, "a record decoded again is written the same");
  if constexpr (std::equality_comparable<Record>) expect(again == record, "a record decoded again is the same");
}

template <class Record>
void decodeInto(std::string_view json, bool isWellFormed) {
  try {
    const auto record = decode<Record>(json);
    expect(isWellFormed, "only JSON is decoded");
    if constexpr (!DecodeOnly<Record>) expectSameAgain(record);
  } catch (const DecodingError& error) {
    const std::string_view line = error.what();
    expect(line.starts_with("malformed JSON") != isWellFormed, "the message tells malformed text from other records");
    expect(isJson('"' + std::string(line) + '"') || line.find_first_of("\"\\") != std::string_view::npos,
           "the message is one line of UTF-8");
  }
}

template <class... Records>
void decodeIntoEach(std::string_view json) {
  const bool isWellFormed = isJson(json);
  (decodeInto<Records>(json, isWellFormed), ...);
  const std::optional<std::string> text = decodeText(json);
  const std::size_t start = json.find_first_not_of(" \t\r\n");
  const bool isText = isWellFormed && json[start] == '"';
  expect(text.has_value() == isText, "a string document is told from others");
}

}  // namespace
}  // namespace orivex::fuzz

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orivex;
  fuzz::decodeIntoEach<FailModel, MessageBody, MessageCustomFields, MessageCustomItems, MessageCustomMenus,
                       MessageModel, PostMessageModel, ShortcutsModel, TrackModel, UploadFileInfoModel,
                       UploadResposeModel, UserMappingModel, WebViewEnvModel, incoming::MessageBody,
                       incoming::MessageCustomItems, incoming::MessageModel>(
      {reinterpret_cast<const char*>(data), size});
  return 0;
}
