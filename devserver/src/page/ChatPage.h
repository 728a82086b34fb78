#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include <libsoup/soup.h>

#include "../faults/Faults.h"
#include "../http/Tokens.h"
#include "PageFolder.h"

namespace orivex::devserver {

/// Serves the chat page at the address that the component builds, and what the page needs under /chat-page/. A
/// developer's own page finds its files beside that address and from the root.
class ChatPage {
 public:
  /// Both references must outlive the server's handlers. Throws std::runtime_error when there is a folder of the
  /// developer's own without a page.
  ChatPage(const Tokens& tokens, Faults& faults, const std::optional<std::filesystem::path>& folder)
      : tokens_(tokens), faults_(faults) {
    if (folder) own_.emplace(*folder);
  }
  ChatPage(const ChatPage&) = delete;
  ChatPage& operator=(const ChatPage&) = delete;

  void addTo(SoupServer* server);

 private:
  void servePage(SoupServerMessage* message);
  void answerPage(SoupServerMessage* message) const;
  void serveRoot(SoupServerMessage* message, std::string_view path) const;

  const Tokens& tokens_;
  Faults& faults_;
  std::optional<PageFolder> own_;
};

}  // namespace orivex::devserver
