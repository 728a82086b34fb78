#pragma once

#include <memory>
#include <optional>
#include <string>

#include "orivex/Export.h"
#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/WebEngine.h"
#include "orivex/platform/ui/View.h"

namespace orivex {

/// A web page as a view; the engine of the installed platform does the work.
class ORIVEX_API WebView : public View {
 public:
  /// `handlers` get what comes out of the page, but for its address: see `observeUrl`. Any of them may let go of the
  /// view.
  WebView(Rect frame, const WebEngineConfiguration& configuration, WebEngineHandlers handlers = {});

  WebEngine& engine() const { return *engine_; }

  void load(const UrlRequest& request) { engine_->load(request); }
  void loadFile(const std::string& path, const std::string& readAccessPath) { engine_->loadFile(path, readAccessPath); }
  void reload() { engine_->reload(); }

  /// `completion` may be null; it gets the error's description, or nothing when the script ran.
  void evaluate(const std::string& script, Once<void(std::optional<std::string> error)> completion = nullptr) {
    engine_->evaluate(script, std::move(completion));
  }

  void setCustomUserAgent(const std::string& userAgent) { engine_->setCustomUserAgent(userAgent); }
  void setScrollSettings(const ScrollSettings& settings) { engine_->setScrollSettings(settings); }

  /// Address of the page; absent before the first load and once the page's process is gone.
  const std::optional<std::string>& url() const { return url_; }

  using UrlObserver =
      std::function<void(const std::optional<std::string>& before, const std::optional<std::string>& now)>;
  [[nodiscard]] Subscription observeUrl(UrlObserver observer) { return urlObservers_.add(std::move(observer)); }

 private:
  void urlChanged(const std::optional<std::string>& url);

  std::optional<std::string> url_;
  Observers<const std::optional<std::string>&, const std::optional<std::string>&> urlObservers_;
  std::unique_ptr<WebEngine> engine_;
  Alive alive_;
};

}  // namespace orivex
