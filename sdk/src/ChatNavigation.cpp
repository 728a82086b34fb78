#include "ChatNavigation.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex {
namespace {

constexpr double watchdogSeconds = 10.0;
constexpr double messageSeconds = 2.0;

}  // namespace

void ChatNavigation::didStartProvisionalNavigation() {
  log::debugPrint("Start Loading");
  // Held weakly: a visitor who has left is not told of a page that nobody waits for.
  Platform::current().mainQueue.asyncAfter(watchdogSeconds, [weak = std::weak_ptr(screen_.hold())] {
    const auto screen = weak.lock();
    if (screen && !screen->isLoaded()) OVKFApiHelper::showMessage("服务请求超时", messageSeconds);
  });
}

void ChatNavigation::didReceiveServerRedirect() {
  log::debugPrint("Redirected by the server");
}

void ChatNavigation::didCommitNavigation() {
  log::debugPrint("Loading");
  screen_.pageCommitted();
}

void ChatNavigation::didFinishNavigation() {
  screen_.pageFinished();
}

void ChatNavigation::didFailProvisionalNavigation(const std::string& error) {
  log::debugPrint("Load failed: " + error);
  OVKFApiHelper::showMessage("请求失败,请稍后重试", messageSeconds);
}

void ChatNavigation::didFailNavigation(const std::string& error) {
  log::debugPrint("Load broken off: " + error);
}

NavigationPolicy ChatNavigation::decideNavigationAction(const std::optional<std::string>& url) {
  if (url) log::debugPrint("URL: " + *url);
  return NavigationPolicy::allow;
}

}  // namespace orivex
