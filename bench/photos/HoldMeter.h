#pragma once

#include <vector>

#include <gtk/gtk.h>

#include "glib/SignalConnection.h"

namespace orivex::bench {

/// How long the main thread works before it looks at its events again, one turn at a time, in processor time: what
/// other programs take of a busy machine does not count, and neither would a wait for the disk. Of a turn that draws a
/// frame, what GTK needs to lay out and paint is told apart from what comes before it. One at a time.
class HoldMeter {
 public:
  explicit HoldMeter(GtkWidget* widget);
  HoldMeter(const HoldMeter&) = delete;
  HoldMeter& operator=(const HoldMeter&) = delete;
  ~HoldMeter();

  /// Milliseconds since the last call: the longest turn without layout and painting, and the longest layout and
  /// painting of one turn.
  struct Holds {
    double outside = 0;
    double frame = 0;
  };
  Holds take();

 private:
  static gint poll(GPollFD* descriptors, guint count, gint timeout);
  void beginFrame(GdkFrameClock* clock);
  void afterPaint(GdkFrameClock* clock);

  static HoldMeter* current;
  gtk::SignalConnection beforePaint_;
  gtk::SignalConnection updated_;
  gtk::SignalConnection afterPaint_;
  Holds longest_;
  double turnStart_ = 0;
  double frameStart_ = 0;
  double frame_ = 0;
};

}  // namespace orivex::bench
