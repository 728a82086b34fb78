#include "Toast.h"

namespace orivex::gtk {
namespace {

constexpr double shownSeconds = 2;

}  // namespace

Toast::Toast(MainQueue& queue) : queue_(queue) {
  label_ = GRef<GtkWidget>::sink(
      GTK_WIDGET(g_object_new(GTK_TYPE_LABEL, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT, "wrap", TRUE, "justify",
                              GTK_JUSTIFY_CENTER, "halign", GTK_ALIGN_CENTER, "valign", GTK_ALIGN_CENTER, nullptr)));
  gtk_widget_add_css_class(label_.get(), "orivex-toast");
  gtk_widget_set_can_target(label_.get(), FALSE);
}

void Toast::show(const std::string& text) {
  gtk_label_set_text(GTK_LABEL(label_.get()), text.c_str());
  gtk_widget_add_css_class(label_.get(), "shown");
  end_ = queue_.repeat(shownSeconds, [this] { hide(); });
}

void Toast::hide() {
  end_.reset();
  gtk_widget_remove_css_class(label_.get(), "shown");
}

}  // namespace orivex::gtk
