#include <cstdio>
#include <memory>
#include <vector>

#include "Bench.h"
#include "Host.h"
#include "Services.h"

namespace orivex::bench {

void measureManyScreens(const Host& host, int count) {
  gtk_widget_set_visible(GTK_WIDGET(host.yardstick), FALSE);  // a compositor gives what it covers no frames
  const gtk::SocketServer server(serveChat());
  std::vector<std::weak_ptr<OVKFApi>> screens;
  double early = 0;
  double earlyHeap = 0;
  int earlyDescriptors = 0;
  int served = 0;
  for (int index = 0; index < count; ++index) {
    bool ready = false;
    const auto chat = host.makeChat(server.url(""), [&] { ready = true; });
    screens.push_back(chat);
    host.screens->rootViewController()->present(chat, false);
    gtk::wait([&] { return ready; }, 20);
    if (useEveryService(chat)) ++served;
    chat->close();
    gtk::wait([&] { return !chat->isViewInWindow(); }, 5);
    // Both counts are taken with all screens gone: the reveal holds each for four seconds.
    if (index + 1 == count / 10 || index + 1 == count) {
      gtk::pass(8);
      if (index + 1 < count) {
        early = statusKiB("VmRSS");
        earlyHeap = heapKiB();
        earlyDescriptors = openDescriptors();
      }
    }
  }
  int alive = 0;
  for (const auto& screen : screens) alive += screen.expired() ? 0 : 1;
  std::printf("%d screens on the real device, each with every service used once\n", count);
  print("  screens in which every answer came", served, "");
  print("  heap in use after the first tenth", earlyHeap, "KiB");
  print("  heap in use at the end", heapKiB(), "KiB");
  print("  resident memory after the first tenth", early, "KiB");
  print("  resident memory at the end", statusKiB("VmRSS"), "KiB");
  print("  open descriptors after the first tenth", earlyDescriptors, "");
  print("  open descriptors at the end", openDescriptors(), "");
  print("  screens left alive", alive, "");
}

}  // namespace orivex::bench
