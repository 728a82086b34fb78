#pragma once

#include <memory>
#include <string>

#include "../settings/Settings.h"

#include "orivex/sdk/OrivexSDK.h"

namespace orivex {
class Window;
}

namespace orivex::demo {

/// Opens the chat over the shop, each time as a new screen.
class ChatLauncher {
 public:
  ChatLauncher(std::shared_ptr<Window> window, std::shared_ptr<OVKFApiConversationDelegate> delegate);

  /// Presents the chat, or pushes it where the window's root is a navigation controller. `server` is the base address.
  /// `card`, which may be null, is the message that the visitor brings along. Does nothing while a chat shows.
  void open(const std::string& server, const Settings& settings, const std::shared_ptr<MessageBody>& card);

  /// The chat that shows; null when none does.
  std::shared_ptr<OVKFApi> current() const { return chat_.lock(); }

 private:
  std::shared_ptr<Window> window_;
  std::shared_ptr<OVKFApiConversationDelegate> delegate_;
  std::weak_ptr<OVKFApi> chat_;
};

}  // namespace orivex::demo
