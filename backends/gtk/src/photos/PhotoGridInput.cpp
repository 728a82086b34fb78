#include <algorithm>

#include "PhotoGrid.h"

namespace orivex::gtk {

PhotoCell* PhotoGrid::cellAt(double x, double y, graphene_point_t& inside) const {
  auto* const view = GTK_WIDGET(view_);
  for (GtkWidget* hit = gtk_widget_pick(view, x, y, GTK_PICK_DEFAULT); hit && hit != view;
       hit = gtk_widget_get_parent(hit)) {
    auto* const cell = PhotoCell::of(hit);
    if (!cell) continue;
    const graphene_point_t point{static_cast<float>(x), static_cast<float>(y)};
    return gtk_widget_compute_point(view, hit, &point, &inside) ? cell : nullptr;
  }
  return nullptr;
}

PhotoCell* PhotoGrid::focusedCell() const {
  auto* const root = gtk_widget_get_root(GTK_WIDGET(view_));
  GtkWidget* const focus = root ? gtk_root_get_focus(root) : nullptr;
  return focus ? PhotoCell::of(gtk_widget_get_first_child(focus)) : nullptr;
}

std::optional<std::size_t> PhotoGrid::positionOf(const PhotoCell& cell) const {
  const auto& items = *list_.items();
  const auto before = [](const auto& one, const auto& other) { return isShownBefore(*one, *other); };
  const auto place = std::lower_bound(items.begin(), items.end(), cell.item(), before);
  if (place == items.end() || *place != cell.item()) return std::nullopt;
  return static_cast<std::size_t>(place - items.begin());
}

void PhotoGrid::released(GtkGestureClick* click, int /*count*/, double x, double y) {
  graphene_point_t inside{};
  auto* const cell = cellAt(x, y, inside);
  if (!cell || !cell->item()) return;
  gtk_gesture_set_state(GTK_GESTURE(click), GTK_EVENT_SEQUENCE_CLAIMED);
  const auto position = positionOf(*cell);
  if (cell->isOnCircle(static_cast<double>(inside.x), static_cast<double>(inside.y))) {
    handlers_.toggle(cell->item());
  } else if (position) {
    handlers_.open(*position);
  }
}

void PhotoGrid::longPressed(GtkGestureLongPress* press, double x, double y) {
  graphene_point_t inside{};
  auto* const cell = cellAt(x, y, inside);
  const auto position = cell && cell->item() ? positionOf(*cell) : std::nullopt;
  if (!position) return;
  gtk_gesture_set_state(GTK_GESTURE(press), GTK_EVENT_SEQUENCE_CLAIMED);
  handlers_.open(*position);
}

gboolean PhotoGrid::keyPressed(GtkEventControllerKey* /*keys*/, guint key, guint /*code*/, GdkModifierType modifiers) {
  if (modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK)) return FALSE;
  if (key == GDK_KEY_space || key == GDK_KEY_KP_Space) {
    if (const auto* const cell = focusedCell(); cell && cell->item()) handlers_.toggle(cell->item());
    return TRUE;
  }
  // By itself the grid makes each of thousands of cells a stop of the Tab key.
  if (key == GDK_KEY_Tab || key == GDK_KEY_ISO_Left_Tab) {
    const bool isBackward = key == GDK_KEY_ISO_Left_Tab || (modifiers & GDK_SHIFT_MASK) != 0;
    handlers_.leave(isBackward ? GTK_DIR_TAB_BACKWARD : GTK_DIR_TAB_FORWARD);
    return TRUE;
  }
  return FALSE;
}

void PhotoGrid::activated(GtkGridView* /*view*/, guint position) {
  handlers_.open(position);
}

}  // namespace orivex::gtk
