#pragma once

#include <initializer_list>
#include <string>

#include <gtk/gtk.h>

/// Short ways to put widgets together, and their style. Main thread.
namespace orivex::gtk {

/// The widget, with a style class more.
inline GtkWidget* styled(GtkWidget* widget, const char* styleClass) {
  gtk_widget_add_css_class(widget, styleClass);
  return widget;
}

inline GtkWidget* boxNew(GtkOrientation orientation, int spacing, std::initializer_list<GtkWidget*> children) {
  GtkWidget* const box = gtk_box_new(orientation, spacing);
  for (GtkWidget* const child : children) gtk_box_append(GTK_BOX(box), child);
  return box;
}

/// A fresh widget that screen readers pass over: what it shows is said by another, or nothing.
inline GtkWidget* decorative(GtkWidget* widget) {
  g_object_set(widget, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr);
  return widget;
}

/// A check button of its own. By itself one answers arrow keys like a press, as if it were in a group of choices.
GtkWidget* checkButtonNew(const char* text);

/// What screen readers call the widget, and not by what it holds.
inline void setAccessibleLabel(GtkWidget* widget, const std::string& text) {
  gtk_accessible_reset_relation(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_RELATION_LABELLED_BY);
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
}

/// The same by the text of a label, also as that changes.
inline void setAccessibleLabel(GtkWidget* widget, GtkWidget* label) {
  gtk_accessible_update_relation(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_RELATION_LABELLED_BY, label, nullptr, -1);
}

/// Whether `widget` is `ancestor` or lies in it.
inline bool isInside(GtkWidget* widget, GtkWidget* ancestor) {
  return widget == ancestor || gtk_widget_is_ancestor(widget, ancestor);
}

/// Adds style rules for the widgets of this component to the default display, below what the host adds by itself with
/// a higher priority. A text, which must last, is added only once.
void installStyle(const char* css, guint priority = GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);

/// Gives a surface of the component, and what lies in it, light colours whatever the desktop's style is.
void makeLight(GtkWidget* surface);

}  // namespace orivex::gtk
