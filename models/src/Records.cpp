#include <optional>
#include <string>
#include <utility>

#include "orivex/models/MessageModel.h"
#include "orivex/models/RandomUUID.h"
#include "orivex/models/UserMappingModel.h"

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

std::string UserMappingModel::toURLQuery() const {
  const auto text = [](const std::optional<std::string>& field) { return field.value_or(std::string{}); };
  return "identity_id=" + text(identity_id) + "&deviceId=" + text(deviceId) + "&app_id=" + text(app_id) +
         "&app_name=" + text(app_name) + "&env_name=" + text(env_name);
}

}  // namespace orivex
