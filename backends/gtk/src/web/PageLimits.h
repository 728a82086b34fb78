#pragma once

#include <vector>

#include <webkit/webkit.h>

#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Keeps one page a part of its screen instead of a browser: it gets no device, prints nothing, neither closes itself
/// nor fills the display; it is not zoomed; its menu has the clipboard's commands only; nothing that is dragged
/// replaces it. What is refused for good is one log line each.
class PageLimits {
 public:
  /// `view` outlives this object. Its content manager gets a script of its own world for all frames.
  explicit PageLimits(WebKitWebView* view);
  PageLimits(const PageLimits&) = delete;
  PageLimits& operator=(const PageLimits&) = delete;
  ~PageLimits() = default;

 private:
  gboolean keyPressed(GtkEventControllerKey* keys, guint key, guint code, GdkModifierType modifiers);
  gboolean permissionRequested(WebKitWebView* view, WebKitPermissionRequest* request);
  gboolean permissionStateQueried(WebKitWebView* view, WebKitPermissionStateQuery* query);
  gboolean contextMenu(WebKitWebView* view, WebKitContextMenu* menu, WebKitHitTestResult* hit);
  gboolean print(WebKitWebView* view, WebKitPrintOperation* operation);
  void closeRequested(WebKitWebView* view);

  std::vector<SignalConnection> signals_;
};

}  // namespace orivex::gtk
