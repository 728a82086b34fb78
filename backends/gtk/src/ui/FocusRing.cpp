#include "FocusRing.h"

#include <utility>

namespace orivex::gtk {

FocusRing::FocusRing(GtkWindow* window, std::function<bool()> applies) : window_(window), applies_(std::move(applies)) {
  gtk_event_controller_set_propagation_phase(input_.get(), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(GTK_WIDGET(window), GRef(input_).release());
  connections_.add(input_.get(), "event", [this](GdkEvent* event) {
    inputCame(gdk_event_get_event_type(event));
    return false;
  });
  connections_.add(window, "notify::focus-visible", [this] {
    if (usesKeys_ && applies_()) gtk_window_set_focus_visible(window_, TRUE);
  });
}

FocusRing::~FocusRing() {
  connections_.disconnect();
  auto* const widget = gtk_event_controller_get_widget(input_.get());
  if (widget) gtk_widget_remove_controller(widget, input_.get());
}

void FocusRing::inputCame(GdkEventType type) {
  if (type != GDK_KEY_PRESS && type != GDK_BUTTON_PRESS && type != GDK_TOUCH_BEGIN) return;
  usesKeys_ = type == GDK_KEY_PRESS;
  if (applies_()) gtk_window_set_focus_visible(window_, usesKeys_);
}

}  // namespace orivex::gtk
