#pragma once

#include <string>
#include <vector>

#include <adwaita.h>
#include <webkit/webkit.h>

namespace orivex::gtk {

/// The first widget below `parent` of a type, depth first; null without one.
GtkWidget* descendant(GtkWidget* parent, GType type);

/// Result of a script in `view` as text.
std::string evaluateIn(WebKitWebView* view, const std::string& script);

/// Real input through the display server, as xdotool takes it.
void visitor(std::vector<std::string> arguments);

/// The message dialog on the screen; null without one.
AdwMessageDialog* openDialog();

}  // namespace orivex::gtk
