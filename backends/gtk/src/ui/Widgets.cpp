#include "Widgets.h"

#include <set>

#include "../glib/GRef.h"

namespace orivex::gtk {
namespace {

// Controls take their colours from the text's; these have some of their own.
constexpr const char* light = R"css(
.orivex-light { background-color: #fafafb; color: rgba(0, 0, 0, 0.8); }
.orivex-light list { color: inherit; }
.orivex-light :focus-visible { outline-color: #1c71d8; }
.orivex-light button.suggested { color: #1c71d8; }
.orivex-light button.destructive { color: #c01c28; }
)css";

}  // namespace

G_GNUC_BEGIN_IGNORE_DEPRECATIONS  // GTK 4.12 has another name for loading from a text
    void
    installStyle(const char* css, guint priority) {
  static std::set<const char*> installed;
  if (!installed.insert(css).second) return;
  const auto provider = GRef<GtkCssProvider>::adopt(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.get(), css, -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()), priority);
}
G_GNUC_END_IGNORE_DEPRECATIONS

GtkWidget* checkButtonNew(const char* text) {
  constexpr auto stopsArrows =
      +[](GtkEventController*, guint key, guint, GdkModifierType, gpointer) noexcept -> gboolean {
    return (key >= GDK_KEY_Left && key <= GDK_KEY_Down) || (key >= GDK_KEY_KP_Left && key <= GDK_KEY_KP_Down);
  };
  GtkWidget* const button = gtk_check_button_new_with_label(text);
  GtkEventController* const keys = gtk_event_controller_key_new();
  g_signal_connect(keys, "key-pressed", G_CALLBACK(stopsArrows), nullptr);
  gtk_widget_add_controller(button, keys);
  return button;
}

void makeLight(GtkWidget* surface) {
  installStyle(light);
  gtk_widget_add_css_class(surface, "orivex-light");
}

}  // namespace orivex::gtk
