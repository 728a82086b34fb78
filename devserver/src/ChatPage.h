#pragma once

#include <libsoup/soup.h>

#include "Faults.h"
#include "Tokens.h"

namespace orivex::devserver {

/// Serves the chat page at the address that the component builds, and what the page needs under /chat-page/.
class ChatPage {
 public:
  /// Both references must outlive the server's handlers.
  ChatPage(const Tokens& tokens, Faults& faults) : tokens_(tokens), faults_(faults) {}
  ChatPage(const ChatPage&) = delete;
  ChatPage& operator=(const ChatPage&) = delete;

  void addTo(SoupServer* server);

 private:
  void servePage(SoupServerMessage* message);
  void answerPage(SoupServerMessage* message) const;

  const Tokens& tokens_;
  Faults& faults_;
};

}  // namespace orivex::devserver
