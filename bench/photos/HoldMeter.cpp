#include "HoldMeter.h"

#include <algorithm>
#include <utility>

#include "Bench.h"

namespace orivex::bench {

HoldMeter* HoldMeter::current = nullptr;

HoldMeter::HoldMeter(GtkWidget* widget) {
  auto* const clock = gtk_widget_get_frame_clock(widget);
  layout_ = gtk::SignalConnection::connect<&HoldMeter::layout>(clock, "layout", this);
  afterPaint_ = gtk::SignalConnection::connect<&HoldMeter::afterPaint>(clock, "after-paint", this);
  turnStart_ = milliseconds();
  current = this;
  g_main_context_set_poll_func(nullptr, poll);
}

HoldMeter::~HoldMeter() {
  g_main_context_set_poll_func(nullptr, nullptr);
  current = nullptr;
}

HoldMeter::Holds HoldMeter::take() {
  return std::exchange(longest_, {});
}

gint HoldMeter::poll(GPollFD* descriptors, guint count, gint timeout) {
  auto& meter = *current;
  const double frame = std::exchange(meter.frame_, 0);
  meter.longest_.outside = std::max(meter.longest_.outside, milliseconds() - meter.turnStart_ - frame);
  meter.longest_.frame = std::max(meter.longest_.frame, frame);
  const gint ready = g_poll(descriptors, count, timeout);
  meter.turnStart_ = milliseconds();
  return ready;
}

void HoldMeter::layout(GdkFrameClock* /*clock*/) {
  frameStart_ = milliseconds();
}

void HoldMeter::afterPaint(GdkFrameClock* /*clock*/) {
  if (frameStart_ > 0) frame_ += milliseconds() - std::exchange(frameStart_, 0);
}

}  // namespace orivex::bench
