#pragma once

#include <string>

#include <gtk/gtk.h>

namespace orivex::gtk {

/// Has screen readers say `text` once; `widget` is what it is about, or where it stands. Main thread.
void announce(GtkWidget* widget, const std::string& text);

/// Moves the focus to a widget that may only be on its way to the screen. Of such a focus GTK tells screen readers
/// nothing, so they are to say `name`.
void focusAloud(GtkWidget* widget, const std::string& name);

}  // namespace orivex::gtk
