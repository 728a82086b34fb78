#include <memory>

#include "BareView.h"
#include "Bench.h"
#include "Host.h"
#include "LoopMeter.h"

namespace orivex::bench {
namespace {

constexpr double seconds = 10;

double wakeUpsPerSecond() {
  LoopMeter meter;
  runLoop(seconds);
  return meter.take().count / seconds;
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
  print("idle, bare web view", wakeUpsPerSecond(), "wake-ups/s");
  gtk_window_set_child(host.yardstick, nullptr);
  bare.reset();

  const auto chat = host.makeChat(server.url(""), [&] { ++ready; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return ready == 2; }, 20);
  gtk::pass(15);  // past the reveal and the watchdog
  print("idle, chat screen", wakeUpsPerSecond(), "wake-ups/s");
  chat->close();
  gtk::pass(1);
}

}  // namespace orivex::bench
