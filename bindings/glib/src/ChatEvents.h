#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "orivex-glib.h"

#include "orivex/sdk/Conversation.h"

namespace orivex::glib {

/// The signals of OrivexChat.
enum class ChatSignal { opened, revealed, closed, failed, trackEvent, shortCut, message, unreadCount };

/// Adds the signals to the class.
void addSignals(OrivexChatClass* type);

/// Emits a chat's signals as its screen tells of them, and keeps the chat as long as the screen lives.
class ChatEvents : public OVKFApiConversationDelegate {
 public:
  explicit ChatEvents(OrivexChat* chat) : chat_(ORIVEX_CHAT(g_object_ref(chat))) {}
  ChatEvents(const ChatEvents&) = delete;
  ChatEvents& operator=(const ChatEvents&) = delete;
  ~ChatEvents() override { g_object_unref(chat_); }

  /// Between the signals `opened` and `closed`.
  bool isOpen() const { return isOpen_; }

  void opened() override;
  void revealed() override;
  void closed() override;
  void failed(const ChatFailure& failure) override;
  void trackEvent(const std::string& name, const std::map<std::string, std::string>& attributes) override;
  void shortCutEvent(const ShortcutsModel& shortcut) override;
  void messageEvent(const std::shared_ptr<MessageModel>& message) override;
  void unReadMessageCountEvent(std::int64_t count) override;

 private:
  OrivexChat* const chat_;
  bool isOpen_ = false;
};

}  // namespace orivex::glib
