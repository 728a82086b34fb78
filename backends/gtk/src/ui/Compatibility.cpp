#include "Compatibility.h"

namespace orivex::gtk {

void loadCss(GtkCssProvider* provider, const char* css) {
#if GTK_CHECK_VERSION(4, 12, 0)
  gtk_css_provider_load_from_string(provider, css);
#else
  gtk_css_provider_load_from_data(provider, css, -1);
#endif
}

GdkRGBA foregroundOf(GtkWidget* widget) {
  GdkRGBA color;
#if GTK_CHECK_VERSION(4, 10, 0)
  gtk_widget_get_color(widget, &color);
#else
  gtk_style_context_get_color(gtk_widget_get_style_context(widget), &color);
#endif
  return color;
}

// Deprecated since GTK 4.10, which has nothing in its place.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
void paintBackground(GtkSnapshot* snapshot, GtkWidget* widget, const graphene_size_t& size) {
  gtk_snapshot_render_background(snapshot, gtk_widget_get_style_context(widget), 0, 0, size.width, size.height);
}
G_GNUC_END_IGNORE_DEPRECATIONS

void announce([[maybe_unused]] GtkWidget* widget, [[maybe_unused]] const char* text) {
#if GTK_CHECK_VERSION(4, 14, 0)
  gtk_accessible_announce(GTK_ACCESSIBLE(widget), text, GTK_ACCESSIBLE_ANNOUNCEMENT_PRIORITY_MEDIUM);
#endif
}

}  // namespace orivex::gtk
