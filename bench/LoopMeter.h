#pragma once

#include <algorithm>
#include <utility>

#include <gtk/gtk.h>

#include "Bench.h"
#include "glib/SignalConnection.h"

namespace orivex::bench {

/// Watches the main loop for as long as it lives, one turn from a wait to the next at a time; there is one such meter
/// at a time. Times are milliseconds of this thread's processor time: what other programs take of a busy machine does
/// not count, and neither would a wait for the disk.
class LoopMeter {
 public:
  /// With `painted`, what GTK needs to lay out and paint that widget's window is told apart from the rest of a turn.
  explicit LoopMeter(GtkWidget* painted = nullptr) {
    if (painted) {
      auto* const clock = gtk_widget_get_frame_clock(painted);
      // Animations and tick callbacks run at "update"; what comes after it is layout and painting.
      beforePaint_ = gtk::SignalConnection::connect(clock, "before-paint", [this] { beginFrame(); });
      updated_ = gtk::SignalConnection::connect(
          clock, "update", [this] { beginFrame(); }, G_CONNECT_AFTER);
      afterPaint_ = gtk::SignalConnection::connect(clock, "after-paint", [this] { afterPaint(); });
    }
    current = this;
    g_main_context_set_poll_func(nullptr, poll);
  }
  LoopMeter(const LoopMeter&) = delete;
  LoopMeter& operator=(const LoopMeter&) = delete;
  ~LoopMeter() {
    g_main_context_set_poll_func(nullptr, nullptr);
    current = nullptr;
  }

  /// Since the last call.
  struct Turns {
    int count = 0;
    double longest = 0;       ///< without layout and painting
    double longestFrame = 0;  ///< layout and painting of one turn
  };
  Turns take() { return std::exchange(turns_, {}); }

 private:
  static gint poll(GPollFD* descriptors, guint count, gint timeout) {
    auto& meter = *current;
    auto& turns = meter.turns_;
    const double frame = std::exchange(meter.frame_, 0);
    ++turns.count;
    turns.longest = std::max(turns.longest, threadMilliseconds() - meter.turnStart_ - frame);
    turns.longestFrame = std::max(turns.longestFrame, frame);
    const gint ready = g_poll(descriptors, count, timeout);
    meter.turnStart_ = threadMilliseconds();
    return ready;
  }
  void beginFrame() { frameStart_ = threadMilliseconds(); }
  void afterPaint() {
    if (frameStart_ > 0) frame_ += threadMilliseconds() - std::exchange(frameStart_, 0);
  }

  static inline LoopMeter* current = nullptr;
  gtk::SignalConnection beforePaint_;
  gtk::SignalConnection updated_;
  gtk::SignalConnection afterPaint_;
  Turns turns_;
  double turnStart_ = threadMilliseconds();
  double frameStart_ = 0;
  double frame_ = 0;
};

/// Runs the main loop for some seconds without the ticks that a test's wait adds.
inline void runLoop(double seconds) {
  bool isOver = false;
  const auto end = [](gpointer flag) -> gboolean {
    *static_cast<bool*>(flag) = true;
    return G_SOURCE_REMOVE;
  };
  g_timeout_add(static_cast<guint>(seconds * 1000), end, &isOver);
  while (!isOver) g_main_context_iteration(nullptr, TRUE);
}

}  // namespace orivex::bench
