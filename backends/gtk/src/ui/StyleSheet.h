#pragma once

#include <gtk/gtk.h>

namespace orivex::gtk {

/// Adds style rules for the widgets of this component to the default display, below what the host adds by itself with
/// a higher priority. A text, which must last, is added only once. Main thread.
void installStyle(const char* css);

/// Gives a surface of the component, and what lies in it, light colours whatever the desktop's style is.
void makeLight(GtkWidget* surface);

}  // namespace orivex::gtk
