#pragma once

#include <chrono>
#include <functional>
#include <future>

#include <glib.h>

namespace orivex::gtk {

/// Runs GLib's main loop until `condition` holds, at most `seconds`. Returns whether it holds.
inline bool wait(const std::function<bool()>& condition, double seconds) {
  // Wakes the loop now and then: a condition may come true on another thread, which wakes nobody. A condition that
  // takes longer than that must not keep other work from its turn.
  const guint ticks = g_timeout_add_full(
      G_PRIORITY_LOW, 2, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
  const gint64 deadline = g_get_monotonic_time() + static_cast<gint64>(seconds * G_USEC_PER_SEC);
  bool holds = false;
  while (!(holds = condition()) && g_get_monotonic_time() < deadline) g_main_context_iteration(nullptr, TRUE);
  g_source_remove(ticks);
  return holds;
}

/// Runs `work` on another thread while the main loop runs here, for questions that this process answers itself.
template <class Work>
auto meanwhile(Work work) {
  auto result = std::async(std::launch::async, work);
  wait([&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 60);
  return result.get();
}

/// Lets the main loop run for `seconds`, to see that nothing happens.
inline void pass(double seconds) {
  wait([] { return false; }, seconds);
}

}  // namespace orivex::gtk
