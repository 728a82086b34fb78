#include "ChatNavigation.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex {
namespace {

constexpr double watchdogSeconds = 10.0;
constexpr double messageSeconds = 2.0;

// A visitor who has left is not told of a page that nobody waits for.
void tell(OVKFApi& screen, const std::string& message) {
  if (!screen.isViewInWindow()) return;
  Platform::current().progressOverlay.bringTo(*screen.view());
  OVKFApiHelper::showMessage(message, messageSeconds);
}

}  // namespace

void ChatNavigation::didStartProvisionalNavigation() {
  log::debugPrint("Start Loading");
  Platform::current().mainQueue.asyncAfter(watchdogSeconds, [weak = std::weak_ptr(screen_.hold())] {
    const auto screen = weak.lock();
    if (screen && screen->view()->isShowing() && !screen->isLoaded()) tell(*screen, "服务请求超时");
  });
}

void ChatNavigation::didReceiveServerRedirect() {
  log::debugPrint("Redirected by the server");
}

void ChatNavigation::didCommitNavigation() {
  hasCommitted_ = true;
  log::debugPrint("Loading");
  screen_.pageCommitted();
}

void ChatNavigation::didFinishNavigation() {
  screen_.pageFinished();
}

void ChatNavigation::didFailProvisionalNavigation(const std::string& error) {
  log::debugPrint("Load failed: " + error);
  const auto screen = screen_.hold();
  if (screen->view()->isShowing()) tell(*screen, "请求失败,请稍后重试");
}

void ChatNavigation::didFailNavigation(const std::string& error) {
  log::debugPrint("Load broken off: " + error);
}

NavigationPolicy ChatNavigation::decideNavigationAction(const std::optional<std::string>& url) {
  if (url) log::debugPrint("URL: " + *url);
  if (!leavesHttps(url)) return NavigationPolicy::allow;
  log::print("The page's first load was led from https to http and ends");
  OVKFApiHelper::showMessage("请求失败,请稍后重试", messageSeconds);
  return NavigationPolicy::cancel;
}

bool ChatNavigation::leavesHttps(const std::optional<std::string>& url) {
  const auto address = url && !hasCommitted_ ? Url::parse(*url) : std::nullopt;
  if (!address) return false;
  if (address->scheme() == "https") isSecret_ = true;
  return isSecret_ && address->scheme() == "http";
}

}  // namespace orivex
