#pragma once

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Runs `source` at the start of each document of the pages of `content`: in a world of scripts of that name, whose
/// variables the page neither sees nor can undo, or with nullptr in the page's own.
void addPageScript(WebKitUserContentManager* content, const char* source, const char* world,
                   WebKitUserContentInjectedFrames frames);

}  // namespace orivex::gtk
