#include "StyleSheet.h"

#include <gtk/gtk.h>

#include "../glib/GRef.h"

namespace orivex::gtk {

void installStyle(const char* css) {
  const auto provider = GRef<GtkCssProvider>::adopt(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.get(), css, -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace orivex::gtk
