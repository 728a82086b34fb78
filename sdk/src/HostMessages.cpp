#include "HostMessages.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "ChatWebViewHost.h"
#include "ScreenGuard.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex {
namespace {

// Between two looks for the page's function, since nothing tells when a page defines one: an old page never does.
constexpr double firstRetrySeconds = 0.5;
constexpr double longestRetrySeconds = 8;

}  // namespace

void HostMessages::add(std::string json) {
  waiting_.push_back(std::move(json));
  if (host_.isLoaded()) start();
}

void HostMessages::start() {
  if (!waiting_.empty() && !std::exchange(isDelivering_, true)) deliver(firstRetrySeconds);
}

// The function itself runs a moment later, so that an error here means that there is none.
void HostMessages::deliver(double retrySeconds) {
  const auto script =
      "if (typeof window.handleHostMessage !== 'function') throw new Error('no function'); setTimeout("
      "function () { window.handleHostMessage(" +
      waiting_.front() + "); }, 0);";
  host_.webView()->evaluate(script, guarded(screen_, [this, retrySeconds](const std::optional<std::string>& error) {
                              if (error) {
                                const double next = std::min(2 * retrySeconds, longestRetrySeconds);
                                Platform::current().mainQueue.asyncAfter(
                                    retrySeconds, guarded(screen_, [this, next] { deliver(next); }));
                                return;
                              }
                              waiting_.pop_front();
                              isDelivering_ = false;
                              start();
                            }));
}

}  // namespace orivex
