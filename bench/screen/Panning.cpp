#include <vector>

#include "Bench.h"
#include "Host.h"

#include "orivex/platform/ui/ScreenEdgePanGesture.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::bench {
namespace {

constexpr int frames = 200;

// How long a frame clock's layout phase takes.
class LayoutTimer {
 public:
  explicit LayoutTimer(GdkFrameClock* clock) : clock_(clock) {
    // Both run after GTK's own handlers of their phase, so that the second closes in on the layout alone.
    g_signal_connect(clock, "update", G_CALLBACK(started), this);
    g_signal_connect(clock, "layout", G_CALLBACK(ended), this);
  }
  LayoutTimer(const LayoutTimer&) = delete;
  LayoutTimer& operator=(const LayoutTimer&) = delete;
  ~LayoutTimer() { g_signal_handlers_disconnect_by_data(clock_, this); }

  std::vector<double> phases;

 private:
  static void started(GdkFrameClock* /*clock*/, gpointer self) {
    static_cast<LayoutTimer*>(self)->start_ = threadMilliseconds();
  }
  static void ended(GdkFrameClock* /*clock*/, gpointer self) {
    auto& timer = *static_cast<LayoutTimer*>(self);
    timer.phases.push_back(threadMilliseconds() - timer.start_);
  }

  GdkFrameClock* clock_;
  double start_ = 0;
};

}  // namespace

void measurePanning(const Host& host) {
  const gtk::SocketServer server(serve("<p>page<script>" + post + "</script>"));
  bool ready = false;
  const auto chat = host.makeChat(server.url(""), [&] { ready = true; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return ready; }, 20);
  gtk::pass(6);

  auto& gesture = *chat->view()->gestures().front();
  std::vector<double> reports;
  LayoutTimer layout(gtk_widget_get_frame_clock(GTK_WIDGET(host.window)));
  gesture.report(ScreenEdgePanGesture::State::began, 0);
  for (int frame = 0; frame < frames; ++frame) {
    const double started = threadMilliseconds();
    gesture.report(ScreenEdgePanGesture::State::changed, frame % 90);
    reports.push_back(threadMilliseconds() - started);
    gtk::pass(0.017);
  }
  gesture.report(ScreenEdgePanGesture::State::cancelled, 0);
  print("panning, handling of a step (largest)", largest(reports), "ms");
  print("panning, layout of the whole window in a frame (median)", median(layout.phases), "ms");
  gtk::pass(1);
  chat->close();
  gtk::pass(1);
}

}  // namespace orivex::bench
