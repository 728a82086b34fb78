#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "Expect.h"

#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"

namespace orivex::fuzz {
namespace {

constexpr std::size_t longest = 64;

/// Makes records out of the fuzzer's bytes: any text, any number, any fields absent.
class Maker {
 public:
  Maker(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  void make(std::string& text) { text = bytes_.ConsumeRandomLengthString(longest); }
  void make(std::int64_t& number) { number = bytes_.ConsumeIntegral<std::int64_t>(); }
  void make(double& number) { number = floating<double, std::uint64_t>(); }
  void make(float& number) { number = floating<float, std::uint32_t>(); }
  void make(bool& value) { value = bytes_.ConsumeBool(); }

  void make(Bytes& data) {
    const std::string text = bytes_.ConsumeRandomLengthString(longest);
    data.assign(text.begin(), text.end());
  }

  void make(std::map<std::string, std::string>& pairs) {
    while (bytes_.ConsumeBool()) {
      std::string key;
      make(key);
      make(pairs[key]);
    }
  }

  template <class Element>
  void make(std::vector<Element>& elements) {
    while (bytes_.ConsumeBool()) make(elements.emplace_back());
  }

  template <class Value>
  void make(std::optional<Value>& field) {
    if (bytes_.ConsumeBool()) make(field.emplace());
  }

  void make(MessageCustomFields& record) { all(record.key, record.value); }
  void make(MessageCustomMenus& record) { all(record.type, record.title, record.visible); }
  void make(MessageCustomItems& record) {
    all(record.customMenus, record.customFields, record.customCardName, record.cellHeight, record.isWrap);
  }
  void make(MessageBody& record) {
    all(record.msgType, record.duration, record.width, record.content, record.image, record.fileSize,
        record.customItems, record.businessProps);
  }
  void make(MessageModel& record) {
    all(record.mId, record.createTime, record.cMid, record.isSensitive);
    if (bytes_.ConsumeBool()) make(*(record.messageBody = std::make_shared<MessageBody>()));
  }

 private:
  template <class... Members>
  void all(Members&... members) {
    (make(members), ...);
  }

  /// Any bits: infinities and what is not a number too.
  template <class Float, class Bits>
  Float floating() {
    return std::bit_cast<Float>(bytes_.ConsumeIntegral<Bits>());
  }

  FuzzedDataProvider bytes_;
};

}  // namespace
}  // namespace orivex::fuzz

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orivex;
  MessageModel record;
  fuzz::Maker(data, size).make(record);
  try {
    const std::string text = encode(record);
    const auto again = decode<MessageModel>(text);
    fuzz::expect(encode(again) == text, "a record decoded again is written the same");
    fuzz::expect(again.mId == record.mId && again.createTime == record.createTime && again.cMid == record.cMid &&
                     again.isSensitive == record.isSensitive,
                 "a message decoded again is the same");
    fuzz::expect((again.messageBody == nullptr) == (record.messageBody == nullptr), "a body is there or not");
    if (record.messageBody) fuzz::expect(*again.messageBody == *record.messageBody, "a body decoded again is the same");
  } catch (const EncodingError&) {
    // JSON cannot hold it.
  }
  return 0;
}
