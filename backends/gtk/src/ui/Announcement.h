#pragma once

#include <string>

#include <gtk/gtk.h>

namespace orivex::gtk {

/// Has screen readers say `text` once; `widget` is what it is about, or where it stands. Main thread.
void announce(GtkWidget* widget, const std::string& text);

}  // namespace orivex::gtk
