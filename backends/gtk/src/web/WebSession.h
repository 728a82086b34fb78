#pragma once

#include <string>
#include <utility>

#include <webkit/webkit.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// The web session of the component's pages in one application: their cookies, storage and caches are apart from the
/// host's web views and from other applications, in folders under `application` that only the visitor may enter. Where
/// such a folder cannot be had, the session leaves nothing on the disk, with one log line.
[[nodiscard]] GRef<WebKitNetworkSession> makeWebSession(const std::string& application);

/// Where such a session keeps what it does not cache.
std::string webDataFolder(const std::string& application);

/// What the processes of the component's pages have in common; the host's own web views are not touched. Each process
/// is given the user agent that was set last before it starts: the component names itself in one way only.
class WebProcessContext {
 public:
  /// `moduleFolder` holds the module for the pages' processes and nothing else. Without it, pages keep WebKit's user
  /// agent and their frames can post messages, with one log line.
  explicit WebProcessContext(const std::string& moduleFolder);

  WebKitWebContext* get() const { return context_.get(); }

  void setUserAgent(std::string userAgent) { userAgent_ = std::move(userAgent); }

 private:
  std::string userAgent_;
  GRef<WebKitWebContext> context_;
  SignalConnection processStarts_;
};

}  // namespace orivex::gtk
