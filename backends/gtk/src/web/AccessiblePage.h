#pragma once

#include <string>

#include <webkit/webkit.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

#if GTK_CHECK_VERSION(4, 14, 0)

/// GTK itself links a page with its view.
struct AccessiblePage {
  AccessiblePage(WebKitWebView* /*view*/, MainQueue& /*mainQueue*/) {}
};

#else

/// Makes what a page shows the accessible child of its web view, for screen readers, where GTK has no way to (before
/// 4.14). The page's process has a connection of its own to the accessibility bus with all of the page on it; only the
/// link between the two is missing. Does nothing while the desktop has accessibility off. Main thread.
class AccessiblePage {
 public:
  AccessiblePage(WebKitWebView* view, MainQueue& mainQueue);
  AccessiblePage(const AccessiblePage&) = delete;
  AccessiblePage& operator=(const AccessiblePage&) = delete;
  ~AccessiblePage();

 private:
  void askDesktop();
  void askPage();
  void link(const std::string& connection);
  void unlink();

  WebKitWebView* view_;
  MainQueue& mainQueue_;
  GRef<GCancellable> cancellable_;
  GRef<GDBusProxy> desktop_;  // null until a page has come
  std::string viewPath_;      // the view's on the bus while the page is linked, otherwise empty
  guint parts_ = 0;           // the subscription to what is added to a linked page
  SignalConnections signals_;
  Alive alive_;
};

#endif

}  // namespace orivex::gtk
