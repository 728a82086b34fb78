#pragma once

#include <webkit/webkit.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Hands the keys that lead back (see `BackInput`) to the screens around a page, once nothing in the page wants them:
/// neither a listener that prevents their default nor a dialog that Escape closes. Typing in a field is no such thing.
/// What it hands on is the widget action `backAction` of the view.
class PageBackKeys {
 public:
  static constexpr const char* backAction = "screens.back";

  /// `view` outlives this object. Its content manager gets a script of its own world for all frames.
  explicit PageBackKeys(WebKitWebView* view);
  PageBackKeys(const PageBackKeys&) = delete;
  PageBackKeys& operator=(const PageBackKeys&) = delete;
  ~PageBackKeys();

 private:
  void pressed(WebKitUserContentManager* content, JSCValue* body);

  WebKitWebView* const view_;
  SignalConnection pressed_;
};

}  // namespace orivex::gtk
