#pragma once

#include <memory>

#include "ChatPageRequests.h"
#include "ReloadLimit.h"

#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex {

class OVKFApi;

/// Builds and holds the two web views of the chat screen: the chat page and the placeholder over it.
class ChatWebViewHost {
 public:
  /// `screen` owns this object.
  explicit ChatWebViewHost(OVKFApi& screen) : screen_(screen) {}

  bool isLoaded() const { return isLoaded_; }

  const std::shared_ptr<WebView>& webView();
  const std::shared_ptr<WebView>& loadView();

  void setNavigationDelegate(std::weak_ptr<NavigationDelegate> delegate) { delegate_ = std::move(delegate); }

  /// Places both views in the screen's view as it is now.
  void layout();

  /// Brings the page back when its process is gone, within limits; past them the visitor is told and the screen closes.
  void observeUrl();

  /// Runs a script in the chat page; a failure is one log line.
  void evaluate(const std::string& script);

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

  OVKFApi& screen_;
  std::shared_ptr<WebView> webView_;
  std::shared_ptr<ChatPageRequests> pageRequests_;
  std::shared_ptr<WebView> loadView_;
  std::weak_ptr<NavigationDelegate> delegate_;
  Subscription urlObservation_;
  ReloadLimit reloads_;
  bool isLoaded_ = false;
};

}  // namespace orivex
