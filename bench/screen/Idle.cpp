#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

#include "BareView.h"
#include "Bench.h"
#include "Host.h"
#include "LoopMeter.h"
#include "support/Processes.h"

namespace orivex::bench {
namespace {

constexpr double seconds = 10;

/// Memory of this process and of those that it has started, what they share counted once; in MiB.
double memory() {
  auto processes = gtk::processesBelow("");
  processes.push_back(getpid());
  double kib = 0;
  for (const int process : processes) {
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string name; rollup >> name;) {
      if (name != "Pss:") continue;
      double share = 0;
      rollup >> share;
      kib += share;
    }
  }
  return kib / 1024;
}

double wakeUpsPerSecond() {
  LoopMeter meter;
  runLoop(seconds);
  return meter.take().count / seconds;
}

}  // namespace

void measureIdleness(const Host& host) {
  const gtk::SocketServer server(serve("<p>page<script>" + post + "</script>"));
  int ready = 0;
  // One window at a time: a compositor gives one that another covers no frames, and the reveal would not end.
  gtk_widget_set_visible(GTK_WIDGET(host.window), FALSE);
  auto bare = std::make_unique<BareView>([&] { ++ready; });
  gtk_window_set_child(host.yardstick, bare->widget());
  bare->load(server.url("/"));
  gtk::wait([&] { return ready == 1; }, 20);
  gtk::pass(15);
  print("idle, bare web view", wakeUpsPerSecond(), "wake-ups/s");
  const double bareMemory = memory();
  bare->endProcess();  // WebKit would keep it for the next page of the same site
  gtk_window_set_child(host.yardstick, nullptr);
  bare.reset();
  gtk_widget_set_visible(GTK_WIDGET(host.yardstick), FALSE);
  gtk_window_present(host.window);

  const auto chat = host.makeChat(server.url(""), [&] { ++ready; });
  host.screens->rootViewController()->present(chat, false);
  gtk::wait([&] { return ready == 2; }, 20);
  gtk::pass(15);  // past the reveal and the watchdog
  print("idle, chat screen", wakeUpsPerSecond(), "wake-ups/s");
  print("idle, memory of all processes, chat screen", memory(), "MiB");
  print("idle, memory of all processes, ratio to a bare web view", memory() / bareMemory, "");
  chat->close();
  gtk::pass(1);
  gtk_window_present(host.yardstick);
}

}  // namespace orivex::bench
