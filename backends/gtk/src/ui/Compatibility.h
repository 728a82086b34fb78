#pragma once

#include <gtk/gtk.h>

/// What different releases of GTK do in different ways. Main thread.
namespace orivex::gtk {

void loadCss(GtkCssProvider* provider, const char* css);

/// The colour of the widget's text.
GdkRGBA foregroundOf(GtkWidget* widget);

/// Paints the background that the style gives to the widget.
void paintBackground(GtkSnapshot* snapshot, GtkWidget* widget, const graphene_size_t& size);

/// Says the text through the screen reader when it has said what it is at; before GTK 4.14 the reader only finds it.
void announce(GtkWidget* widget, const char* text);

}  // namespace orivex::gtk
