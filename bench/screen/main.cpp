#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <adwaita.h>

#include "Host.h"

namespace {

GtkWindow* makeWindow() {
  auto* const window = GTK_WINDOW(gtk_window_new());
  gtk_window_set_default_size(window, 360, 720);
  return window;
}

}  // namespace

// screen-bench [round-trip|opening|burst|photos|panning|idle|screens]...: everything without arguments. Needs a
// display.
int main(int argc, char** argv) {
  using namespace orivex;
  adw_init();
  gtk::install();
  auto* const window = makeWindow();
  gtk_window_set_child(window, gtk_label_new("Shop"));
  const bench::Host host{window, gtk::attach(window), makeWindow()};
  gtk_window_present(window);
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
