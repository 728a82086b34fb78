#pragma once

#include <string>

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Result of a script in `view` as text.
std::string evaluateIn(WebKitWebView* view, const std::string& script);

}  // namespace orivex::gtk
