#pragma once

#include <functional>
#include <vector>

#include <webkit/webkit.h>

#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Notices a network process that is lost while a page loads: what the page still waits for fails with WebKit's own
/// internal error, and the load then ends as if nothing had happened, with a page that lacks its scripts.
class NetworkWatch {
 public:
  /// `view` outlives this object. `lost` is called inside one of WebKit's signals, once a load.
  NetworkWatch(WebKitWebView* view, std::function<void()> lost);

 private:
  void loadChanged(WebKitWebView* view, WebKitLoadEvent event);
  void resourceStarted(WebKitWebView* view, WebKitWebResource* resource, WebKitURIRequest* request);
  void resourceFailed(WebKitWebResource* resource, GError* error);

  const std::function<void()> lost_;
  bool loading_ = false;  // a document has come and waits for its parts
  std::vector<SignalConnection> resources_;
  std::vector<SignalConnection> signals_;
};

}  // namespace orivex::gtk
