#include "orivex/platform/ui/WebView.h"

#include <utility>

#include "orivex/platform/Platform.h"

namespace orivex {

WebView::WebView(Rect frame, const WebEngineConfiguration& configuration, WebEngineHandlers handlers) : View(frame) {
  handlers.urlChanged = alive_.guard([this](const std::optional<std::string>& url) { urlChanged(url); });
  engine_ = Platform::current().webEngines.make(configuration, std::move(handlers));
}

void WebView::urlChanged(const std::optional<std::string>& url) {
  const auto kept = shared_from_this();
  const auto before = std::exchange(url_, url);
  urlObservers_.notify(before, url);
}

}  // namespace orivex
