#pragma once

#include <string>
#include <vector>

#include <webkit/webkit.h>

namespace orivex::gtk {

/// Makes `postMessage` of the page's handlers throw a RangeError for what is far beyond any message. What does travel
/// is taken apart on the main thread, before it is known how much it is.
void addMessageLimit(WebKitUserContentManager* content, const std::vector<std::string>& names);

}  // namespace orivex::gtk
