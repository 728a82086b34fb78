#include "ChatWebViewHost.h"

#include "ChatEvents.h"
#include "Placeholder.h"
#include "ScreenGuard.h"
#include "ScriptMessageBridge.h"
#include "StartScripts.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/voice/RecordManager.h"

namespace orivex {
namespace {

constexpr double revealDelay = 4.0;
constexpr double fadeSeconds = 0.4;
constexpr double messageSeconds = 2.0;

// How often a page that loses its process is brought back in any so many seconds.
constexpr std::size_t mostReloads = 3;
constexpr double reloadWindow = 10.0;

}  // namespace

ChatWebViewHost::Surroundings ChatWebViewHost::surroundings() const {
  const auto current = firstWindow(Platform::current().application);
  const auto* const window = screen_.window() ? screen_.window() : current.get();
  return {statusBarHeight(window), window ? window->safeAreaInsets() : EdgeInsets{}};
}

Rect ChatWebViewHost::webViewFrame() const {
  // Taller than the screen on purpose: the page scrolls nothing itself and keeps its own margins.
  const auto around = surroundings();
  const Rect& root = screen_.view()->frame();
  // A screen that begins under a title bar has its page at its own top.
  const double y = screen_.window() && root == screen_.window()->screenFrame() ? 0 : root.y;
  return {0, y, root.width, around.statusBarHeight + root.height + around.insets.bottom};
}

Rect ChatWebViewHost::loadViewFrame() const {
  const double top = surroundings().statusBarHeight;
  const Rect& root = screen_.view()->frame();
  return {0, top, root.width, root.height - top};
}

const std::shared_ptr<WebView>& ChatWebViewHost::webView() {
  // The screen asks for both web views while its view loads: asked for earlier, they must not be made a second time.
  screen_.view();
  if (webView_) return webView_;
  const auto around = surroundings();
  WebEngineConfiguration configuration{
      .scriptMessageNames = ScriptMessageBridge::messageNames(screen_.conversationEvents),
      .userScripts = {},
      .inspectable = screen_.debug};
  addEnvironmentScript(configuration.userScripts, around.statusBarHeight, around.insets.bottom);
  addDebugConsoles(configuration.userScripts);
  log::debugPrint("Distance: safeDistanceTop:" + doubleText(around.insets.top) + " safeDistanceBottom:" +
                  doubleText(around.insets.bottom) + " navHeight:" + doubleText(around.statusBarHeight));
  webView_ = std::make_shared<WebView>(webViewFrame(), configuration, makeHandlers_());
  webView_->setCustomUserAgent(OVKFApiHelper::userAgent());
  webView_->setAlpha(0);
  webView_->setScrollSettings({.scrollEnabled = false, .backgroundColor = Color::white()});
  webView_->setBackgroundColor(Color::white());
  webView_->evaluate(std::string(touchScript));
  return webView_;
}

const std::shared_ptr<WebView>& ChatWebViewHost::loadView() {
  screen_.view();
  if (loadView_) return loadView_;
  loadView_ = makePlaceholder(loadViewFrame(), guarded(screen_, [this] { screen_.goBack(); }));
  return loadView_;
}

void ChatWebViewHost::layout() {
  if (webView_) webView_->setFrame(webViewFrame());
  if (loadView_) loadView_->setFrame(loadViewFrame());
}

void ChatWebViewHost::observeUrl() {
  urlObservation_ = webView()->observeUrl(guarded(screen_, [this](const auto& /*before*/, const auto& now) {
    if (!now) processGone();
  }));
}

void ChatWebViewHost::processGone() {
  isComingBack_ = true;
  RecordManager::shared().closeMicrophoneOf(*screen_.view());  // nobody is left to end a press
  if (mayReload()) {
    webView_->reload();
    return;
  }
  isLost_ = true;
  events_.failed(ChatFailure::Cause::pageLost);
  OVKFApiHelper::showMessage(screen_.view(), tr("请求失败,请稍后重试"), messageSeconds,
                             [screen = screen_.shared_from_this()] { closeScreenIfShown(*screen); });
}

void ChatWebViewHost::bringBack() {
  if (std::exchange(isLost_, false)) webView_->reload();
}

bool ChatWebViewHost::mayReload() {
  const double now = Platform::current().mainQueue.now();
  while (!reloads_.empty() && now - reloads_.front() >= reloadWindow) reloads_.pop_front();
  if (reloads_.size() >= mostReloads) return false;
  reloads_.push_back(now);
  return true;
}

void ChatWebViewHost::whenBack(std::function<void()> act) {
  if (!isComingBack_) return act();
  afterwards_.push_back(std::move(act));
}

void ChatWebViewHost::evaluate(const std::string& script, std::function<void()> lost) {
  webView()->evaluate(script, [lost = std::move(lost)](const std::optional<std::string>& error) {
    if (!error) return;
    if (lost && *error == WebEngine::processGone) return lost();
    log::debugPrint("Error evaluating JavaScript: " + *error);
  });
}

void ChatWebViewHost::pageFinished() {
  log::debugPrint("Loaded");
  isComingBack_ = false;
  for (const auto& act : std::exchange(afterwards_, {})) act();
  webView()->evaluate(std::string(viewportScript));
  // Held weakly: a screen that its host has let go of is not kept for a page that nobody sees.
  Platform::current().mainQueue.asyncAfter(revealDelay, guarded(screen_, [this] { reveal(); }));
}

void ChatWebViewHost::reveal() {
  if (isLoaded_) return;
  isLoaded_ = true;
  webView()->setAlpha(1);
  const auto placeholder = loadView();
  // What the visitor does from now on is meant for the page that shines through.
  placeholder->setUserInteractionEnabled(false);
  Platform::current().animator.animate(
      fadeSeconds, [placeholder](double progress) { placeholder->setAlpha(1 - progress); },
      [placeholder] {
        placeholder->removeFromSuperview();
        placeholder->engine().endProcess();  // a fifth of all that an open chat takes of the memory
      });
  revealed_();
}

}  // namespace orivex
