#pragma once

#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Result of a script in `view` as text.
std::string evaluateIn(WebKitWebView* view, const std::string& script);

/// Processes below this one, through the sandbox's own in between, whose names contain `name`.
std::vector<int> processesBelow(const std::string& name);

/// How many processes of pages run.
inline std::size_t pageProcesses() {
  return processesBelow("WebKitWebProces").size();
}

}  // namespace orivex::gtk
