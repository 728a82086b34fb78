#include "GlContextGuard.h"

#include <gtk/gtk.h>

namespace orivex::gtk {
namespace {

// Runs before what paints, and after the phases of a frame in which views are made and laid out.
gboolean beforePaint(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* /*values*/,
                     gpointer /*data*/) noexcept {
  gdk_gl_context_clear_current();
  return G_SOURCE_CONTINUE;
}

}  // namespace

void guardGlContext() {
  static const gulong hook = [] {
    g_type_class_ref(GDK_TYPE_FRAME_CLOCK);  // which defines the signal; kept, as the hook is
    return g_signal_add_emission_hook(g_signal_lookup("paint", GDK_TYPE_FRAME_CLOCK), 0, beforePaint, nullptr, nullptr);
  }();
  static_cast<void>(hook);
}

}  // namespace orivex::gtk
