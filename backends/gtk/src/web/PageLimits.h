#pragma once

#include <webkit/webkit.h>

#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// The world of the limits' script, in which nothing of a page runs. There a page's dropped or pasted files that it
/// does not take are posted to the handler "offeredFiles": whether they were dropped.
inline constexpr const char* limitsWorld = "OrivexSDK";

/// Keeps one page a part of its screen instead of a browser: it gets no device, prints nothing, neither closes itself
/// nor fills the display; it is not zoomed; its menu has the clipboard's commands only; nothing that is dragged
/// replaces it. What is refused for good is one log line each, and what the page writes to its console. The limits hold
/// while the connections do; the content manager of `view` gets a script of its own world for all frames.
[[nodiscard]] SignalConnections limitPage(WebKitWebView* view);

}  // namespace orivex::gtk
