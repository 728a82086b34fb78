#pragma once

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Lets a page remember the pointers that are down in it, and cancels them when `pointersTakenScript` says so. WebKit
/// does not: it hears no more of a pointer once another widget has claimed it.
void addTakenPointersScript(WebKitUserContentManager* content);

}  // namespace orivex::gtk
