#include "HeldKeys.h"

namespace orivex::gtk {

HeldKeys::HeldKeys(GtkWidget* widget, Keys down, Repeats repeats) : down_(std::move(down)) {
  auto* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(widget, keys);
  connections_.add(keys, "key-pressed", [this, repeats](guint /*key*/, guint code) {
    const bool isRepeat = !down_.insert(code).second;
    return isRepeat && repeats != Repeats::pass;
  });
  connections_.add(keys, "key-released", [this](guint /*key*/, guint code) { down_.erase(code); });
  auto* const focus = gtk_event_controller_focus_new();
  gtk_widget_add_controller(widget, focus);
  // Keys that are let go of elsewhere are not heard of here.
  connections_.add(focus, "leave", [this, repeats] {
    if (repeats != Repeats::stopAlways) down_.clear();
  });
}

}  // namespace orivex::gtk
