#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "orivex/Export.h"

namespace orivex {

struct MessageModel;
struct ShortcutsModel;

/// Why a chat did not come to show its page.
struct ChatFailure {
  enum class Cause {
    badAddress,   ///< server, entry and key make no address
    refused,      ///< the server answered with an error status
    timedOut,     ///< no answer in time; a page that is only slow may still come
    unreachable,  ///< no answer: the network, the server's name or its certificate
    insecure,     ///< an address with the visitor's token was led from https to http
    pageLost,     ///< the page lost its process again and again
  };

  Cause cause = Cause::unreachable;
  int status = 0;      ///< of HTTP, where the server refused; 0 otherwise
  double seconds = 0;  ///< since the session started
  std::string detail;  ///< in English, for logs; may be empty

  /// All of it in one line of English, for logs: "the server refused, status 403".
  ORIVEX_API std::string message() const;
};

/// Receives what happens to the chat and in the conversation, on the main thread. The screen keeps its delegate alive.
/// Override what you need. The first three of the conversation come from pages that raise them, and only where the
/// host has set `OVKFApi::conversationEvents`.
class OVKFApiConversationDelegate {
 public:
  OVKFApiConversationDelegate() = default;
  OVKFApiConversationDelegate(const OVKFApiConversationDelegate&) = delete;
  OVKFApiConversationDelegate& operator=(const OVKFApiConversationDelegate&) = delete;
  virtual ~OVKFApiConversationDelegate() = default;

  /// The screen has come up, or has come back after it was closed.
  virtual void opened() {}

  /// The page shows.
  virtual void revealed() {}

  /// The page does not show, or not in time; the visitor is told. May come again, for example after a slow load.
  virtual void failed(const ChatFailure& /*failure*/) {}

  /// The screen has left, in whatever way; not told while another screen merely covers it. Of a screen that is the root
  /// of its window, for example in `gtk::widgetFor`: the page or the visitor has gone back, and the host may take it
  /// away; where it still shows a second later, it counts as opened again.
  virtual void closed() {}

  virtual void unReadMessageCountEvent(std::int64_t /*count*/) {}
  virtual void shortCutEvent(const ShortcutsModel& /*model*/) {}
  virtual void messageEvent(const std::shared_ptr<MessageModel>& /*model*/) {}
  virtual void trackEvent(const std::string& /*name*/, const std::map<std::string, std::string>& /*attributes*/) {}
};

}  // namespace orivex
