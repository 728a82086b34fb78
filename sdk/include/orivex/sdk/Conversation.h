#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace orivex {

struct MessageModel;
struct ShortcutsModel;

/// Receives what happens in the conversation, on the main thread. The screen keeps its delegate alive. Override what
/// you need; today the page raises tracking events only.
class OVKFApiConversationDelegate {
 public:
  OVKFApiConversationDelegate() = default;
  OVKFApiConversationDelegate(const OVKFApiConversationDelegate&) = delete;
  OVKFApiConversationDelegate& operator=(const OVKFApiConversationDelegate&) = delete;
  virtual ~OVKFApiConversationDelegate() = default;

  virtual void unReadMessageCountEvent(std::int64_t /*count*/) {}
  virtual void shortCutEvent(const ShortcutsModel& /*model*/) {}
  virtual void messageEvent(const std::shared_ptr<MessageModel>& /*model*/) {}
  virtual void trackEvent(const std::string& /*name*/, const std::map<std::string, std::string>& /*attributes*/) {}
};

}  // namespace orivex
