#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Host.h"
#include "ShopWindow.h"

// screen-bench [round-trip|opening|burst|photos|panning|idle|screens]...: everything without arguments. Needs a
// display.
int main(int argc, char** argv) {
  using namespace orivex;
  const auto [window, screens] = bench::openShop(360, 720);
  auto* const yardstick = GTK_WINDOW(gtk_window_new());
  gtk_window_set_default_size(yardstick, 360, 720);
  const bench::Host host{window, screens, yardstick};
  gtk_window_present(host.yardstick);
  gtk::pass(1);
  const auto asked = [&](std::string_view name) {
    for (int index = 1; index < argc; ++index) {
      if (name == argv[index]) return true;
    }
    return argc == 1;
  };
  if (asked("round-trip")) bench::measureRoundTrip(host);
  if (asked("opening")) bench::measureOpening(host);
  if (asked("burst")) bench::measureBurst(host);
  if (asked("photos")) bench::measurePhotos(host);
  if (asked("panning")) bench::measurePanning(host);
  if (asked("idle")) bench::measureIdleness(host);
  if (asked("screens")) bench::measureManyScreens(host, 50);
  return 0;
}
