#pragma once

#include <webkit/webkit.h>

#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Gives pages pointer events of fingers. WebKitGTK makes none: a page gets touch events, and only when a finger has
/// left a mouse's press and release at one go, so what a page lets visitors hold would not know of the finger. A page
/// that scrolls takes its finger back with `pointercancel`, as `touch-action` allows.
void addTouchPointers(WebKitUserContentManager* content);

/// Lets a page remember the pointers that are down in it, and cancels them when `pointersTakenScript` says so. WebKit
/// does not: it hears no more of a pointer once another widget has claimed it.
void addTakenPointers(WebKitUserContentManager* content);

/// Hands the keys that lead back (see `HostWindow`) to the screens around a page, as the action "screens.back" of its
/// view, once nothing in the page wants them: neither a listener that prevents their default nor a dialog that Escape
/// closes. Typing in a field is no such thing. The connection ends before `view`.
[[nodiscard]] SignalConnection addBackKeys(WebKitWebView* view);

}  // namespace orivex::gtk
