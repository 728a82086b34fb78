#include "HeldKeys.h"

namespace orivex::gtk {

HeldKeys::HeldKeys(GtkWidget* widget, Keys down, Repeats repeats) : down_(std::move(down)), repeats_(repeats) {
  auto* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(widget, keys);
  pressed_ = SignalConnection::connect<&HeldKeys::pressed>(keys, "key-pressed", this);
  released_ = SignalConnection::connect<&HeldKeys::released>(keys, "key-released", this);
  auto* const focus = gtk_event_controller_focus_new();
  gtk_widget_add_controller(widget, focus);
  left_ = SignalConnection::connect<&HeldKeys::left>(focus, "leave", this);
}

gboolean HeldKeys::pressed(GtkEventControllerKey* /*keys*/, guint /*key*/, guint code, GdkModifierType /*modifiers*/) {
  const bool isRepeat = !down_.insert(code).second;
  return isRepeat && repeats_ != Repeats::pass;
}

void HeldKeys::released(GtkEventControllerKey* /*keys*/, guint /*key*/, guint code, GdkModifierType /*modifiers*/) {
  down_.erase(code);
}

// Keys that are let go of elsewhere are not heard of here.
void HeldKeys::left(GtkEventControllerFocus* /*focus*/) {
  if (repeats_ != Repeats::stopAlways) down_.clear();
}

}  // namespace orivex::gtk
