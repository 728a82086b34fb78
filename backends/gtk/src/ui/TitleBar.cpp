#include "TitleBar.h"

#include <algorithm>

#include <adwaita.h>

namespace orivex::gtk {
namespace {

GtkWidget* barAround(GtkWidget* widget) {
  while (widget && !ADW_IS_HEADER_BAR(widget) && !GTK_IS_HEADER_BAR(widget)) widget = gtk_widget_get_parent(widget);
  return widget;
}

bool holdsButtons(GtkWidget* widget) {
  return GTK_IS_WINDOW_CONTROLS(widget) && !gtk_window_controls_get_empty(GTK_WINDOW_CONTROLS(widget));
}

// Of the bar around a window's buttons, when it begins at the top; 0 for any other widget.
double bottomOf(GtkWidget* buttons, GtkWidget* content) {
  auto* const bar = holdsButtons(buttons) ? barAround(buttons) : nullptr;
  graphene_rect_t bounds;
  if (!bar || !gtk_widget_compute_bounds(bar, content, &bounds) || bounds.origin.y > 1) return 0;
  if (bounds.size.height > 0) return static_cast<double>(bounds.origin.y + bounds.size.height);
  int natural = 0;  // of a window that has not been laid out yet
  gtk_widget_measure(bar, GTK_ORIENTATION_VERTICAL, -1, nullptr, &natural, nullptr, nullptr);
  return natural;
}

double lowestBottom(GtkWidget* widget, GtkWidget* content) {
  if (!gtk_widget_get_visible(widget) || !gtk_widget_get_child_visible(widget)) return 0;
  double bottom = bottomOf(widget, content);
  for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child)) {
    bottom = std::max(bottom, lowestBottom(child, content));
  }
  return bottom;
}

}  // namespace

bool isInTitleBar(GtkWidget* widget) {
  return barAround(widget) != nullptr;
}

double titleBarHeight(GtkWidget* content) {
  return lowestBottom(content, content);
}

}  // namespace orivex::gtk
