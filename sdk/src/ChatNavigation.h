#pragma once

#include <functional>
#include <memory>

#include "orivex/platform/ui/WebView.h"

namespace orivex {

class OVKFApi;

/// Follows the navigations of the chat page: the watchdog, the failure messages, the log. The page may go anywhere;
/// only its first load must not be led from https to http, with the visitor's token.
class ChatNavigation : public NavigationDelegate {
 public:
  /// What the navigation asks and tells the screen.
  struct Screen {
    std::function<std::shared_ptr<OVKFApi>()> hold;
    std::function<void()> pageCommitted;
    std::function<void()> pageFinished;
  };

  explicit ChatNavigation(Screen screen) : screen_(std::move(screen)) {}

  void didStartProvisionalNavigation() override;
  void didReceiveServerRedirect() override;
  void didCommitNavigation() override;
  void didFinishNavigation() override;
  void didFailProvisionalNavigation(const std::string& error) override;
  void didFailNavigation(const std::string& error) override;
  NavigationPolicy decideNavigationAction(const std::optional<std::string>& url) override;
  NavigationPolicy decideNavigationResponse() override { return NavigationPolicy::allow; }

 private:
  bool leavesHttps(const std::optional<std::string>& url);

  Screen screen_;
  bool isSecret_ = false;  // the first load, from the first https address on
  bool hasCommitted_ = false;
};

}  // namespace orivex
