#pragma once

#include <filesystem>
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

/// How many entries a folder has: of "/proc/self/fd" the open files, of "/proc/self/task" the threads.
inline std::ptrdiff_t entriesOf(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}

/// Whether this process has a file open whose path begins like this.
inline bool holdsOpen(const std::string& path) {
  std::error_code closedMeanwhile;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    if (std::filesystem::read_symlink(entry, closedMeanwhile).string().starts_with(path)) return true;
  }
  return false;
}

}  // namespace orivex::gtk
