#pragma once

#include <gtk/gtk.h>

#include "../glib/GRef.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// The widget that shows what `view` holds besides its subviews; null for a plain view.
GRef<GtkWidget> contentWidgetFor(View& view);

/// Brings `widget`, made by `contentWidgetFor` of the same view, up to date.
void updateContentWidget(GtkWidget* widget, const View& view);

/// Gives `widget`, made by `contentWidgetFor` of the same view, its place in a view that has been given this size.
void allocateContentWidget(GtkWidget* widget, const View& view, int width, int height);

}  // namespace orivex::gtk
