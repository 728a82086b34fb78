#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "orivex/Export.h"
#include "orivex/models/MessageBody.h"

namespace orivex {

/// One chat message as the page reports it and the host receives it. Codes and times are the chat page's, in its own
/// units, and pass through unchanged. Shared by reference: hold it in a `std::shared_ptr`. It can be moved, which keeps
/// its identity, but not copied.
struct MessageModel {
  /// Stores the arguments and makes a fresh `messageUUId`.
  /// @throws std::system_error when the system has no random numbers to give.
  ORIVEX_API explicit MessageModel(std::optional<std::int64_t> mId = {}, std::optional<double> createTime = {},
                                   std::optional<double> timestamp = {}, std::optional<std::string> timeFormatInfo = {},
                                   std::optional<std::string> cMid = {}, std::optional<std::int64_t> mType = {},
                                   std::shared_ptr<MessageBody> messageBody = {},
                                   std::optional<std::string> optionSelected = {},
                                   std::optional<std::string> sUserId = {}, std::optional<std::string> sessionId = {},
                                   std::optional<std::int64_t> mStatus = {},
                                   std::optional<std::int64_t> memberType = {}, std::optional<bool> isSensitive = {},
                                   std::optional<double> sessionStartTime = {},
                                   std::optional<std::int64_t> renderMemberType = {});
  MessageModel(MessageModel&&) = default;
  MessageModel(const MessageModel&) = delete;
  MessageModel& operator=(MessageModel&&) = delete;
  MessageModel& operator=(const MessageModel&) = delete;
  ~MessageModel() = default;

  /// The record as JSON; empty when it cannot be encoded.
  ORIVEX_API std::string getJsonString() const;

  const std::string messageUUId;  ///< local identity: a random UUID in upper case; never in JSON

  std::optional<std::int64_t> mId;  ///< the server's identifier
  std::optional<double> createTime;
  std::optional<double> timestamp;            ///< for display; never in JSON
  std::optional<std::string> timeFormatInfo;  ///< for display; never in JSON
  std::optional<std::string> cMid;            ///< the client's identifier
  std::optional<std::int64_t> mType;
  std::shared_ptr<MessageBody> messageBody;   ///< null when absent
  std::optional<std::string> optionSelected;  ///< what the visitor chose, in a choice message
  std::optional<std::string> sUserId;         ///< sender
  std::optional<std::string> sessionId;
  std::optional<std::int64_t> mStatus;
  std::optional<std::int64_t> memberType;  ///< the sender's
  std::optional<bool> isSensitive;
  std::optional<double> sessionStartTime;        ///< in the unit of `createTime`
  std::optional<std::int64_t> renderMemberType;  ///< the member type to draw with
};

namespace incoming {

/// A chat message with its status under `msgStatus` instead of `mStatus`; neither key is read for the other.
/// Decode-only.
struct MessageModel {
  std::optional<std::int64_t> mId{};
  std::optional<double> createTime{};
  std::optional<std::string> cMid{};
  std::optional<std::int64_t> mType{};
  std::shared_ptr<orivex::MessageBody> messageBody{};  ///< null when absent
  std::optional<std::string> optionSelected{};
  std::optional<std::string> sUserId{};
  std::optional<std::string> sessionId{};
  std::optional<std::int64_t> msgStatus{};
  std::optional<std::int64_t> memberType{};
  std::optional<bool> isSensitive{};
  std::optional<double> sessionStartTime{};
  std::optional<std::int64_t> renderMemberType{};
};

}  // namespace incoming
}  // namespace orivex
