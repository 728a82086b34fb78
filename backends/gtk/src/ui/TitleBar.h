#pragma once

#include <gtk/gtk.h>

namespace orivex::gtk {

/// The part of a window's content that moves and closes the window, for windows whose content includes it: the header
/// bar with the window's buttons. Main thread.

/// Whether `widget` is such a header bar or inside one.
bool isInTitleBar(GtkWidget* widget);

/// Points from the top of `content` down to the lower edge of the header bar with the window's buttons that shows at
/// its top; 0 without one, for example on a desktop whose windows have no buttons.
double titleBarHeight(GtkWidget* content);

}  // namespace orivex::gtk
