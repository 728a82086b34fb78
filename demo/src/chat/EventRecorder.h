#pragma once

#include <functional>
#include <map>
#include <string>

#include "orivex/sdk/OrivexSDK.h"

namespace orivex::demo {

/// One thing that happened in the conversation.
struct ConversationEvent {
  std::string name;
  std::map<std::string, std::string> attributes;
};

/// The event that the page tells how many answers are unread, as its attribute "count".
inline constexpr char unreadEvent[] = "unReadMessageCount";

/// The conversation's delegate: hands on all that happens there.
class EventRecorder final : public OVKFApiConversationDelegate {
 public:
  using Receiver = std::function<void(const ConversationEvent&)>;

  explicit EventRecorder(Receiver receiver) : receiver_(std::move(receiver)) {}

  void unReadMessageCountEvent(std::int64_t count) override;
  void shortCutEvent(const ShortcutsModel& model) override;
  void messageEvent(const std::shared_ptr<MessageModel>& model) override;
  void trackEvent(const std::string& name, const std::map<std::string, std::string>& attributes) override;

 private:
  Receiver receiver_;
};

}  // namespace orivex::demo
