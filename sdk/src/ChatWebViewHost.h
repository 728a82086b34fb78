#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex {

class ChatEvents;
class OVKFApi;

/// Builds and holds the two web views of the chat screen: the chat page and the placeholder over it.
class ChatWebViewHost {
 public:
  /// `screen` owns this object and `events`; `makeHandlers` gives what serves the chat page, once it is built, and
  /// `revealed` is called when the page shows.
  ChatWebViewHost(OVKFApi& screen, ChatEvents& events, std::function<WebEngineHandlers()> makeHandlers,
                  std::function<void()> revealed)
      : screen_(screen), events_(events), makeHandlers_(std::move(makeHandlers)), revealed_(std::move(revealed)) {}

  bool isLoaded() const { return isLoaded_; }

  const std::shared_ptr<WebView>& webView();
  const std::shared_ptr<WebView>& loadView();

  /// Address of the document in the chat page whose scripts run now.
  std::optional<std::string> documentUrl() { return webView()->engine().documentUrl(); }

  /// Keeps what the component tells the page, and its consoles, from documents of other origins that come later.
  void limitUserScripts(const std::vector<std::string>& origins) { webView()->engine().limitUserScripts(origins); }

  /// Places both views in the screen's view as it is now.
  void layout();

  /// Brings the page back when its process is gone, within limits; past them the visitor is told and the screen closes.
  void observeUrl();

  /// The screen comes up: loads a page again that was given up.
  void bringBack();

  /// Runs `act` now, or once the page is there again when its process has gone: what the visitor has chosen
  /// meanwhile is not lost.
  void whenBack(std::function<void()> act);

  /// Runs a script in the chat page; a failure is one log line, or calls `lost` when it was the page's process that
  /// went before it had run the script.
  void evaluate(const std::string& script, std::function<void()> lost = nullptr);

  /// A load has finished: fits the page to the screen and reveals it a little later.
  void pageFinished();

  /// Shows the page and fades the placeholder out; only the first call does anything.
  void reveal();

 private:
  // The areas of the screen's window that the page itself keeps clear of.
  struct Surroundings {
    double statusBarHeight = 0;
    EdgeInsets insets;
  };
  Surroundings surroundings() const;
  Rect webViewFrame() const;
  Rect loadViewFrame() const;
  void processGone();
  bool mayReload();

  OVKFApi& screen_;
  ChatEvents& events_;
  std::function<WebEngineHandlers()> makeHandlers_;
  std::function<void()> revealed_;
  std::shared_ptr<WebView> webView_;
  std::shared_ptr<WebView> loadView_;
  Subscription urlObservation_;
  std::deque<double> reloads_;  // times of the last ones
  bool isLoaded_ = false;
  bool isLost_ = false;
  bool isComingBack_ = false;
  std::vector<std::function<void()>> afterwards_;
};

}  // namespace orivex
