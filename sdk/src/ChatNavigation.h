#pragma once

#include <optional>
#include <string>

#include "orivex/platform/ports/WebEngine.h"

namespace orivex {

class ChatEvents;
class ChatWebViewHost;
class OVKFApi;
class PageOrigins;

/// Follows the navigations of the chat page: the watchdog, the failure messages, the log. The page may go anywhere;
/// only its first load must not be led from https to http, with the visitor's token.
class ChatNavigation {
 public:
  /// `screen` owns this object and the others.
  ChatNavigation(OVKFApi& screen, ChatWebViewHost& host, PageOrigins& origins, ChatEvents& events)
      : screen_(screen), host_(host), origins_(origins), events_(events) {}

  /// What is to be done at the events of a navigation.
  WebEngineHandlers handlers();

 private:
  void started();
  void committed();
  void finished();
  void failedToStart(const std::string& error);
  NavigationPolicy decide(const std::optional<std::string>& url);
  bool leavesHttps(const std::optional<std::string>& url);

  OVKFApi& screen_;
  ChatWebViewHost& host_;
  PageOrigins& origins_;
  ChatEvents& events_;
  bool isSecret_ = false;  // the first load, from the first https address on
  bool hasCommitted_ = false;
};

}  // namespace orivex
