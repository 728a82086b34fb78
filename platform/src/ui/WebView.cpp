#include "orivex/platform/ui/WebView.h"

#include "orivex/platform/Platform.h"

namespace orivex {

WebView::WebView(Rect frame, WebEngineConfiguration configuration, WebEngineHandlers handlers)
    : View(frame), configuration_(std::move(configuration)) {
  handlers.urlChanged = alive_.guard([this](const std::optional<std::string>& url) { urlChanged(url); });
  engine_ = Platform::current().webEngines.make(configuration_, std::move(handlers));
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
