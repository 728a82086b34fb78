#pragma once

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Gives pages pointer events of fingers. WebKitGTK makes none: a page gets touch events, and only when a finger has
/// left a mouse's press and release at one go, so what a page lets visitors hold would not know of the finger. A page
/// that scrolls takes its finger back with `pointercancel`, as `touch-action` allows.
void addTouchPointersScript(WebKitUserContentManager* content);

}  // namespace orivex::gtk
