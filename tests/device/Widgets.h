#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "glib/GMemory.h"

/// What a visitor finds on the screen.
namespace orivex::gtk {

/// The first widget below `parent` that matches, depth first; null without one.
inline GtkWidget* findBelow(GtkWidget* parent, const std::function<bool(GtkWidget*)>& matches) {
  for (GtkWidget* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
    if (matches(child)) return child;
    if (GtkWidget* const found = findBelow(child, matches)) return found;
  }
  return nullptr;
}

inline GtkWidget* findByType(GtkWidget* parent, GType type) {
  return findBelow(parent, [&](GtkWidget* widget) { return G_TYPE_CHECK_INSTANCE_TYPE(widget, type) != FALSE; });
}

inline GtkWidget* findByClass(GtkWidget* parent, const char* cssClass) {
  return findBelow(parent, [&](GtkWidget* widget) { return gtk_widget_has_css_class(widget, cssClass) != FALSE; });
}

/// A visible label with this text.
inline GtkWidget* findByText(GtkWidget* parent, const std::string& text) {
  return findBelow(parent, [&](GtkWidget* widget) {
    return GTK_IS_LABEL(widget) && gtk_widget_get_mapped(widget) && text == gtk_label_get_text(GTK_LABEL(widget));
  });
}

/// The message dialog on the screen; null without one.
inline AdwMessageDialog* openDialog() {
  const GListPtr windows(gtk_window_list_toplevels());
  for (const GList* window = windows.get(); window; window = window->next) {
    if (ADW_IS_MESSAGE_DIALOG(window->data) && gtk_widget_get_mapped(GTK_WIDGET(window->data))) {
      return ADW_MESSAGE_DIALOG(window->data);
    }
  }
  return nullptr;
}

}  // namespace orivex::gtk
