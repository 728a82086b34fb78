#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/WebEngine.h"
#include "orivex/platform/ui/UserContentController.h"
#include "orivex/platform/ui/View.h"

namespace orivex {

class WebView;

/// Follows the navigations of a web view, on the main thread.
class NavigationDelegate {
 public:
  NavigationDelegate() = default;
  NavigationDelegate(const NavigationDelegate&) = delete;
  NavigationDelegate& operator=(const NavigationDelegate&) = delete;
  virtual ~NavigationDelegate() = default;

  virtual void didStartProvisionalNavigation() = 0;
  virtual void didReceiveServerRedirect() = 0;
  virtual void didCommitNavigation() = 0;
  virtual void didFinishNavigation() = 0;
  virtual void didFailProvisionalNavigation(const std::string& error) = 0;
  virtual void didFailNavigation(const std::string& error) = 0;
  virtual NavigationPolicy decideNavigationAction(const std::optional<std::string>& url) = 0;
  virtual NavigationPolicy decideNavigationResponse() = 0;
};

/// Serves what the page of a web view asks of its surroundings, on the main thread. See `PageRequestHandlers`.
class WebUIDelegate {
 public:
  WebUIDelegate() = default;
  WebUIDelegate(const WebUIDelegate&) = delete;
  WebUIDelegate& operator=(const WebUIDelegate&) = delete;
  virtual ~WebUIDelegate() = default;

  virtual void openWindow(const std::string& url) = 0;
  virtual void chooseFiles(const FileChooserRequest& request,
                           Once<void(std::vector<std::string> paths)> completion) = 0;
  virtual void downloadEnded(const EndedDownload& download) = 0;
  virtual void leave() = 0;
};

struct WebViewConfiguration {
  std::shared_ptr<UserContentController> userContentController = std::make_shared<UserContentController>();
  bool javaScriptCanOpenWindowsAutomatically = true;
};

/// A web page as a view: what it was told can be read back, the engine of the installed platform does the rest.
class WebView : public View {
 public:
  WebView(Rect frame, WebViewConfiguration configuration);

  const WebViewConfiguration& configuration() const { return configuration_; }
  WebEngine& engine() const { return *engine_; }

  /// The delegate is not kept alive.
  void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) { delegate_ = std::move(delegate); }

  /// The delegate is not kept alive. Without one the page is declined whatever it asks for.
  void setUIDelegate(std::weak_ptr<WebUIDelegate> delegate) { uiDelegate_ = std::move(delegate); }

  void load(const UrlRequest& request) { engine_->load(request); }
  void loadFile(const std::string& path, const std::string& readAccessPath) { engine_->loadFile(path, readAccessPath); }
  void reload() { engine_->reload(); }

  /// `completion` may be null; it gets the error's description, or nothing when the script ran.
  void evaluate(const std::string& script, Once<void(std::optional<std::string> error)> completion = nullptr) {
    engine_->evaluate(script, std::move(completion));
  }

  const std::string& customUserAgent() const { return userAgent_; }
  void setCustomUserAgent(std::string userAgent);

  const ScrollSettings& scrollSettings() const { return scrolling_; }
  void setScrollSettings(const ScrollSettings& settings);

  /// Address of the page; absent before the first load and once the page's process is gone.
  const std::optional<std::string>& url() const { return url_; }

  using UrlObserver =
      std::function<void(const std::optional<std::string>& before, const std::optional<std::string>& now)>;
  [[nodiscard]] Subscription observeUrl(UrlObserver observer) { return urlObservers_.add(std::move(observer)); }

 private:
  WebEngineHandlers engineHandlers();
  PageRequestHandlers pageRequestHandlers();
  void urlChanged(const std::optional<std::string>& url);

  WebViewConfiguration configuration_;
  std::weak_ptr<NavigationDelegate> delegate_;
  std::weak_ptr<WebUIDelegate> uiDelegate_;
  std::string userAgent_;
  ScrollSettings scrolling_;
  std::optional<std::string> url_;
  Observers<const std::optional<std::string>&, const std::optional<std::string>&> urlObservers_;
  std::unique_ptr<WebEngine> engine_;
  Alive alive_;
};

}  // namespace orivex
