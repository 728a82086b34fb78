#pragma once

#include <functional>

#include <glib.h>

namespace orivex::gtk {

/// Runs GLib's main loop until `condition` holds, at most `seconds`. Returns whether it holds.
inline bool wait(const std::function<bool()>& condition, double seconds) {
  // Wakes the loop now and then: a condition may come true on another thread, which wakes nobody.
  class Ticks {
   public:
    Ticks()
        : id_(g_timeout_add(
              2, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr)) {}
    Ticks(const Ticks&) = delete;
    Ticks& operator=(const Ticks&) = delete;
    ~Ticks() { g_source_remove(id_); }

   private:
    guint id_;
  } const ticks;
  const gint64 deadline = g_get_monotonic_time() + static_cast<gint64>(seconds * G_USEC_PER_SEC);
  while (!condition()) {
    if (g_get_monotonic_time() >= deadline) return false;
    g_main_context_iteration(nullptr, TRUE);
  }
  return true;
}

/// Lets the main loop run for `seconds`, to see that nothing happens.
inline void pass(double seconds) {
  wait([] { return false; }, seconds);
}

}  // namespace orivex::gtk
