#include "HoldMeter.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace orivex::bench {

namespace {

double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace

HoldMeter* HoldMeter::current = nullptr;

HoldMeter::HoldMeter(GtkWidget* widget) : turnStart_(processorMilliseconds()) {
  auto* const clock = gtk_widget_get_frame_clock(widget);
  // Animations and tick callbacks run at "update"; what comes after it is layout and painting.
  beforePaint_ = gtk::SignalConnection::connect<&HoldMeter::beginFrame>(clock, "before-paint", this);
  updated_ = gtk::SignalConnection::connectAfter<&HoldMeter::beginFrame>(clock, "update", this);
  afterPaint_ = gtk::SignalConnection::connect<&HoldMeter::afterPaint>(clock, "after-paint", this);
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
  meter.longest_.outside = std::max(meter.longest_.outside, processorMilliseconds() - meter.turnStart_ - frame);
  meter.longest_.frame = std::max(meter.longest_.frame, frame);
  const gint ready = g_poll(descriptors, count, timeout);
  meter.turnStart_ = processorMilliseconds();
  return ready;
}

void HoldMeter::beginFrame(GdkFrameClock* /*clock*/) {
  frameStart_ = processorMilliseconds();
}

void HoldMeter::afterPaint(GdkFrameClock* /*clock*/) {
  if (frameStart_ > 0) frame_ += processorMilliseconds() - std::exchange(frameStart_, 0);
}

}  // namespace orivex::bench
