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

/// The question on the screen, which is a window of its own or, with newer libraries, lies in one; null without one.
inline GtkWidget* openDialog() {
#if ADW_CHECK_VERSION(1, 5, 0)
  const GType type = ADW_TYPE_ALERT_DIALOG;
#else
  const GType type = ADW_TYPE_MESSAGE_DIALOG;
#endif
  const auto matches = [&](GtkWidget* widget) {
    return G_TYPE_CHECK_INSTANCE_TYPE(widget, type) != FALSE && gtk_widget_get_mapped(widget) != FALSE;
  };
  const GListPtr windows(gtk_window_list_toplevels());
  for (const GList* item = windows.get(); item; item = item->next) {
    auto* const window = GTK_WIDGET(item->data);
    if (GtkWidget* const dialog = matches(window) ? window : findBelow(window, matches)) return dialog;
  }
  return nullptr;
}

inline std::string headingOf(GtkWidget* dialog) {
  char* heading = nullptr;
  g_object_get(dialog, "heading", &heading, nullptr);
  return GCharPtr(heading).get();
}

/// Presses the button with this text, as a visitor does; false without one.
inline bool pressInDialog(const char* label) {
  GtkWidget* const dialog = openDialog();
  GtkWidget* const button = dialog ? findBelow(dialog,
                                               [&](GtkWidget* widget) {
                                                 return GTK_IS_BUTTON(widget) &&
                                                        g_strcmp0(gtk_button_get_label(GTK_BUTTON(widget)), label) == 0;
                                               })
                                   : nullptr;
  if (button) g_signal_emit_by_name(button, "clicked");
  return button != nullptr;
}

/// Closes it without an answer.
inline void closeDialog() {
#if ADW_CHECK_VERSION(1, 5, 0)
  adw_dialog_close(ADW_DIALOG(openDialog()));
#else
  gtk_window_close(GTK_WINDOW(openDialog()));
#endif
}

}  // namespace orivex::gtk
