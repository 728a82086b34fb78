#pragma once

#include <string>

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Result of a script in `view` as text.
std::string evaluateIn(WebKitWebView* view, const std::string& script);

/// How many processes of pages run below this one, through the sandbox's own in between.
int pageProcesses();

}  // namespace orivex::gtk
