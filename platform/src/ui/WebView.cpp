#include "orivex/platform/ui/WebView.h"

#include "orivex/platform/Platform.h"

namespace orivex {

WebView::WebView(Rect frame, WebViewConfiguration configuration)
    : View(frame), configuration_(std::move(configuration)) {
  const auto& controller = *configuration_.userContentController;
  engine_ = Platform::current().webEngines.make(
      {controller.handlerNames(), controller.userScripts(), configuration_.javaScriptCanOpenWindowsAutomatically},
      engineHandlers());
}

WebEngineHandlers WebView::engineHandlers() {
  // A handler may close the screen and with it this view, so each keeps the delegate it calls, and never `this` after.
  const auto tell = [this](void (NavigationDelegate::*event)()) {
    return alive_.guard([this, event] {
      if (const auto delegate = delegate_.lock()) ((*delegate).*event)();
    });
  };
  const auto tellError = [this](void (NavigationDelegate::*event)(const std::string&)) {
    return alive_.guard([this, event](const std::string& error) {
      if (const auto delegate = delegate_.lock()) ((*delegate).*event)(error);
    });
  };
  WebEngineHandlers handlers;
  handlers.scriptMessage = [controller = configuration_.userContentController](const ScriptMessage& message) {
    controller->deliver(message);
  };
  handlers.didStartProvisionalNavigation = tell(&NavigationDelegate::didStartProvisionalNavigation);
  handlers.didReceiveServerRedirect = tell(&NavigationDelegate::didReceiveServerRedirect);
  handlers.didCommitNavigation = tell(&NavigationDelegate::didCommitNavigation);
  handlers.didFinishNavigation = tell(&NavigationDelegate::didFinishNavigation);
  handlers.didFailProvisionalNavigation = tellError(&NavigationDelegate::didFailProvisionalNavigation);
  handlers.didFailNavigation = tellError(&NavigationDelegate::didFailNavigation);
  handlers.decideNavigationAction = [this](const std::optional<std::string>& url) {
    const auto delegate = delegate_.lock();
    return delegate ? delegate->decideNavigationAction(url) : NavigationPolicy::allow;
  };
  handlers.decideNavigationResponse = [this] {
    const auto delegate = delegate_.lock();
    return delegate ? delegate->decideNavigationResponse() : NavigationPolicy::allow;
  };
  handlers.urlChanged = alive_.guard([this](const std::optional<std::string>& url) { urlChanged(url); });
  handlers.pageRequests = pageRequestHandlers();
  return handlers;
}

PageRequestHandlers WebView::pageRequestHandlers() {
  PageRequestHandlers handlers;
  handlers.openWindow = alive_.guard([this](const std::string& url) {
    if (const auto delegate = uiDelegate_.lock()) delegate->openWindow(url);
  });
  handlers.chooseFiles =
      alive_.guard([this](const FileChooserRequest& request, Once<void(std::vector<std::string>)> completion) {
        if (const auto delegate = uiDelegate_.lock()) delegate->chooseFiles(request, std::move(completion));
      });
  handlers.downloadEnded = alive_.guard([this](const EndedDownload& download) {
    if (const auto delegate = uiDelegate_.lock()) delegate->downloadEnded(download);
  });
  handlers.leave = alive_.guard([this] {
    if (const auto delegate = uiDelegate_.lock()) delegate->leave();
  });
  return handlers;
}

void WebView::urlChanged(const std::optional<std::string>& url) {
  const auto kept = shared_from_this();
  const auto before = std::exchange(url_, url);
  urlObservers_.notify(before, url);
}

void WebView::setCustomUserAgent(std::string userAgent) {
  userAgent_ = std::move(userAgent);
  engine_->setCustomUserAgent(userAgent_);
}

void WebView::setScrollSettings(const ScrollSettings& settings) {
  scrolling_ = settings;
  engine_->setScrollSettings(settings);
}

}  // namespace orivex
