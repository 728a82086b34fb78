#include "HeldKeys.h"

namespace orivex::gtk {

HeldKeys::HeldKeys(GtkWidget* widget, Keys down, Repeats repeats) : down_(std::move(down)) {
  gtk_event_controller_set_propagation_phase(keys_.get(), GTK_PHASE_CAPTURE);
  for (const auto& controller : {keys_, focus_}) gtk_widget_add_controller(widget, GRef(controller).release());
  connections_.add(keys_.get(), "key-pressed", [this, repeats](guint /*key*/, guint code) {
    const bool isRepeat = !down_.insert(code).second;
    return isRepeat && repeats != Repeats::pass;
  });
  connections_.add(keys_.get(), "key-released", [this](guint /*key*/, guint code) { down_.erase(code); });
  // Keys that are let go of elsewhere are not heard of here.
  connections_.add(focus_.get(), "leave", [this, repeats] {
    if (repeats != Repeats::stopAlways) down_.clear();
  });
}

HeldKeys::~HeldKeys() {
  connections_.disconnect();
  for (const auto& controller : {keys_, focus_}) {
    auto* const widget = gtk_event_controller_get_widget(controller.get());
    if (widget) gtk_widget_remove_controller(widget, controller.get());
  }
}

}  // namespace orivex::gtk
