#include "ChatNavigation.h"

#include "ChatEvents.h"
#include "ChatWebViewHost.h"
#include "PageOrigins.h"
#include "ScreenGuard.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/voice/RecordManager.h"

namespace orivex {
namespace {

constexpr double watchdogSeconds = 10.0;
constexpr double messageSeconds = 2.0;

}  // namespace

WebEngineHandlers ChatNavigation::handlers() {
  const auto act = [this](auto event) {
    return guarded(screen_, [this, event](auto&&... arguments) { (this->*event)(arguments...); });
  };
  WebEngineHandlers handlers;
  handlers.didStartProvisionalNavigation = act(&ChatNavigation::started);
  handlers.didReceiveServerRedirect = [] { log::debugPrint("Redirected by the server"); };
  handlers.didCommitNavigation = act(&ChatNavigation::committed);
  handlers.didFinishNavigation = act(&ChatNavigation::finished);
  handlers.didFailProvisionalNavigation = act(&ChatNavigation::failedToStart);
  handlers.didFailNavigation = [](const std::string& error) { log::debugPrint("Load broken off: " + error); };
  handlers.decideNavigationAction = [this, weak = screen_.weak_from_this()](const std::optional<std::string>& url) {
    const auto screen = weak.lock();
    return screen ? decide(url) : NavigationPolicy::allow;
  };
  return handlers;
}

void ChatNavigation::started() {
  log::debugPrint("Start Loading");
  const auto reportTimeout = [this] {
    if (!screen_.view()->isShowing() || screen_.isLoaded()) return;
    events_.failed(ChatFailure::Cause::timedOut);
    OVKFApiHelper::showMessage(screen_.view(), tr("服务请求超时"), messageSeconds);
  };
  Platform::current().mainQueue.asyncAfter(watchdogSeconds, guarded(screen_, reportTimeout));
}

void ChatNavigation::committed() {
  hasCommitted_ = true;
  log::debugPrint("Loading");
  origins_.committed(host_.documentUrl());
  RecordManager::shared().closeMicrophoneOf(*screen_.view());  // the document that began a press cannot end it
}

void ChatNavigation::finished() {
  if (origins_.finished(host_.documentUrl())) host_.limitUserScripts(origins_.all(screen_.allowedOrigins));
  host_.pageFinished();
}

void ChatNavigation::failedToStart(const std::string& error) {
  log::debugPrint("Load failed: " + error);
  if (!screen_.view()->isShowing()) return;
  events_.failed(ChatFailure::Cause::unreachable, error);
  OVKFApiHelper::showMessage(screen_.view(), tr("请求失败,请稍后重试"), messageSeconds);
}

NavigationPolicy ChatNavigation::decide(const std::optional<std::string>& url) {
  if (url) log::debugPrint("URL: " + *url);
  if (!leavesHttps(url)) return NavigationPolicy::allow;
  events_.failed(ChatFailure::Cause::insecure);
  OVKFApiHelper::showMessage(screen_.view(), tr("请求失败,请稍后重试"), messageSeconds);
  return NavigationPolicy::cancel;
}

bool ChatNavigation::leavesHttps(const std::optional<std::string>& url) {
  const auto address = url && !hasCommitted_ ? Url::parse(*url) : std::nullopt;
  if (!address) return false;
  if (address->scheme() == "https") isSecret_ = true;
  return isSecret_ && address->scheme() == "http";
}

}  // namespace orivex
