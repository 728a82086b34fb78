#include "orivex/models/MessageModel.h"

#include <utility>

#include "orivex/models/RandomUUID.h"

namespace orivex {

// Parameters that are named like the members would hide them.
// NOLINTBEGIN(readability-identifier-naming)
MessageModel::MessageModel(std::optional<std::int64_t> mId_, std::optional<double> createTime_,
                           std::optional<double> timestamp_, std::optional<std::string> timeFormatInfo_,
                           std::optional<std::string> cMid_, std::optional<std::int64_t> mType_,
                           std::shared_ptr<MessageBody> messageBody_, std::optional<std::string> optionSelected_,
                           std::optional<std::string> sUserId_, std::optional<std::string> sessionId_,
                           std::optional<std::int64_t> mStatus_, std::optional<std::int64_t> memberType_,
                           std::optional<bool> isSensitive_, std::optional<double> sessionStartTime_,
                           std::optional<std::int64_t> renderMemberType_)
    : messageUUId(randomUUID()),
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
// NOLINTEND(readability-identifier-naming)

}  // namespace orivex
