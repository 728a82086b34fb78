#include "orivex/models/MessageModel.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/random.h>

namespace orivex {
namespace {

/// A random UUID (RFC 4122, version 4) in upper case.
std::string freshUUID() {
  std::array<std::uint8_t, 16> bytes{};
  while (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "getrandom");
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);  // version
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);  // variant

  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += digits[bytes[i] >> 4U];
    text += digits[bytes[i] & 0x0FU];
  }
  return text;
}

}  // namespace

MessageModel::MessageModel(std::optional<std::int64_t> mId_, std::optional<double> createTime_,
                           std::optional<double> timestamp_, std::optional<std::string> timeFormatInfo_,
                           std::optional<std::string> cMid_, std::optional<std::int64_t> mType_,
                           std::shared_ptr<MessageBody> messageBody_, std::optional<std::string> optionSelected_,
                           std::optional<std::string> sUserId_, std::optional<std::string> sessionId_,
                           std::optional<std::int64_t> mStatus_, std::optional<std::int64_t> memberType_,
                           std::optional<bool> isSensitive_, std::optional<double> sessionStartTime_,
                           std::optional<std::int64_t> renderMemberType_)
    : messageUUId(freshUUID()),
      mId(mId_),
      createTime(createTime_),
      timestamp(timestamp_),
      timeFormatInfo(std::move(timeFormatInfo_)),
      cMid(std::move(cMid_)),
      mType(mType_),
      messageBody(std::move(messageBody_)),
      optionSelected(std::move(optionSelected_)),
      sUserId(std::move(sUserId_)),
      sessionId(std::move(sessionId_)),
      mStatus(mStatus_),
      memberType(memberType_),
      isSensitive(isSensitive_),
      sessionStartTime(sessionStartTime_),
      renderMemberType(renderMemberType_) {}

}  // namespace orivex
