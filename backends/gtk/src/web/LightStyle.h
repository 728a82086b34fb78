#pragma once

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Adds rules of the component's own to a page, below the page's except where they are important.
void addStyle(WebKitUserContentManager* content, const char* css, WebKitUserContentInjectedFrames frames);

// The chat page is light whatever the desktop's style is, which WebKit follows for all web views of the process. Left
// to the page is what its own style sheets say about dark desktops.

/// Controls, scroll bars and the colours that a page does not set are light, in all frames.
void addLightStyle(WebKitUserContentManager* content);

/// Scripts of the page itself learn that the visitor prefers light colours.
void addLightScript(WebKitUserContentManager* content);

}  // namespace orivex::gtk
