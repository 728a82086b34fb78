#pragma once

#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

#include "../FreeWith.h"

namespace orivex::gtk {

using AddedScript = std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>>;

/// Runs `source` at the start of each document of the pages of `content`: in a world of scripts of that name, whose
/// variables the page neither sees nor can undo, or with nullptr in the page's own.
void addPageScript(WebKitUserContentManager* content, const char* source, WebKitUserContentInjectedFrames frames,
                   const char* world = nullptr);

/// Runs `script` before a page's own in the documents of `origins`, whatever their ports, or of all when there are
/// none; `content` forgets it when it is asked to remove what this returns.
AddedScript addUserScript(WebKitUserContentManager* content, const std::string& script,
                          const std::vector<std::string>& origins);

/// Adds rules of the component's own to a page, below the page's except where they are important.
void addPageStyle(WebKitUserContentManager* content, const char* css, WebKitUserContentInjectedFrames frames);

/// Makes `postMessage` of the page's handlers throw a RangeError for what is far beyond any message, and for floods.
/// What does travel is taken apart on the main thread, before it is known how much it is.
void addMessageLimit(WebKitUserContentManager* content, const std::vector<std::string>& names);

// The chat page is light whatever the desktop's style is, which WebKit follows for all web views of the process. Left
// to the page is what its own style sheets say about dark desktops.

/// Controls, scroll bars and the colours that a page does not set are light, in all frames.
void addLightStyle(WebKitUserContentManager* content);

/// Scripts of the page itself find that the visitor prefers light colours.
void addLightScript(WebKitUserContentManager* content);

}  // namespace orivex::gtk
