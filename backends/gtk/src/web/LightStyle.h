#pragma once

#include <webkit/webkit.h>

namespace orivex::gtk {

// The chat page is light whatever the desktop's style is, which WebKit follows for all web views of the process. Left
// to the page is what its own style sheets say about dark desktops.

/// Controls, scroll bars and the colours that a page does not set are light, in all frames.
void addLightStyle(WebKitUserContentManager* content);

/// Scripts of the page itself learn that the visitor prefers light colours.
void addLightScript(WebKitUserContentManager* content);

}  // namespace orivex::gtk
