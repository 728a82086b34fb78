#include <memory>

#include "BareView.h"
#include "Bench.h"
#include "Host.h"

namespace orivex::bench {
namespace {

constexpr double seconds = 10;

// Counts how often the main loop wakes up.
class WakeUps {
 public:
  WakeUps() : before_(g_main_context_get_poll_func(nullptr)) {
    inner = before_;
    count = 0;
    g_main_context_set_poll_func(nullptr, poll);
  }
  WakeUps(const WakeUps&) = delete;
  WakeUps& operator=(const WakeUps&) = delete;
  ~WakeUps() { g_main_context_set_poll_func(nullptr, before_); }

  static inline int count = 0;

 private:
  static gint poll(GPollFD* descriptors, guint length, gint timeout) {
    const gint ready = inner(descriptors, length, timeout);
    ++count;
    return ready;
  }
  static inline GPollFunc inner = nullptr;
  GPollFunc before_;
};

double perSecond() {
  const WakeUps wakeUps;
  bool over = false;
  const auto end = [](gpointer done) -> gboolean {
    *static_cast<bool*>(done) = true;
    return G_SOURCE_REMOVE;
  };
  g_timeout_add(static_cast<guint>(seconds * 1000), end, &over);
  while (!over) g_main_context_iteration(nullptr, TRUE);
  return WakeUps::count / seconds;
}

}  // namespace

void measureIdleness(const Host& host) {
  const gtk::SocketServer server(serve("<p>page<script>" + post + "</script>"));
  int ready = 0;
  auto bare = std::make_unique<BareView>([&] { ++ready; });
  gtk_window_set_child(host.yardstick, bare->widget());
  bare->load(server.url("/"));
  gtk::wait([&] { return ready == 1; }, 20);
  gtk::pass(15);
  print("idle, bare web view", perSecond(), "wake-ups/s");
  gtk_window_set_child(host.yardstick, nullptr);
  bare.reset();

  const auto chat = host.makeChat(server.url(""), [&] { ++ready; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return ready == 2; }, 20);
  gtk::pass(15);  // past the reveal and the watchdog
  print("idle, chat screen", perSecond(), "wake-ups/s");
  chat->close();
  gtk::pass(1);
}

}  // namespace orivex::bench
