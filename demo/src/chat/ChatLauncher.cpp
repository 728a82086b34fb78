#include "ChatLauncher.h"

#include "orivex/platform/ui/NavigationController.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::demo {
namespace {

/// `msgType` of a card, as the chat page numbers it.
constexpr std::int64_t cardMessage = 7;

std::shared_ptr<UserMappingModel> visitorOf(const Settings& settings) {
  auto visitor = std::make_shared<UserMappingModel>();
  visitor->identity_id = settings.visitorId;
  if (!settings.visitorName.empty()) visitor->visitor_name = settings.visitorName;
  visitor->app_id = "orivex-demo";
  visitor->app_name = "demo";
  visitor->env_name = "test";
  return visitor;
}

}  // namespace

ChatLauncher::ChatLauncher(std::shared_ptr<Window> window, std::shared_ptr<OVKFApiConversationDelegate> delegate)
    : window_(std::move(window)), delegate_(std::move(delegate)) {}

void ChatLauncher::open(const std::string& server, const Settings& settings, const std::shared_ptr<MessageBody>& card) {
  if (const auto shown = chat_.lock(); shown && shown->isViewInWindow()) return;
  const auto chat = std::make_shared<OVKFApi>();
  chat->conversionDelegate = delegate_;
  chat->conversationEvents = true;
  if (card) chat->sendMessage(cardMessage, card);
  chat->startSession(server, settings.entryId, settings.key, visitorOf(settings));
  chat_ = chat;
  const auto& root = window_->rootViewController();
  if (const auto navigation = std::dynamic_pointer_cast<NavigationController>(root)) {
    navigation->pushViewController(chat, true);
  } else {
    root->present(chat, true);
  }
}

}  // namespace orivex::demo
