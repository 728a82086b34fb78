#pragma once

#include <memory>

#include <adwaita.h>

#include "support/MainLoop.h"

#include "orivex/gtk/Gtk.h"

namespace orivex::bench {

/// A host's window of a phone's size with something in it, and the screens that it shows.
struct ShopWindow {
  GtkWindow* window;
  std::shared_ptr<Window> screens;
};

/// Prepares the device and opens the window; returns once it has settled. Once in a process.
inline ShopWindow openShop(int width, int height) {
  adw_init();
  gtk::install();
  auto* const window = GTK_WINDOW(gtk_window_new());
  gtk_window_set_default_size(window, width, height);
  gtk_window_set_child(window, gtk_label_new("Shop"));
  auto screens = gtk::attach(window);
  gtk_window_present(window);
  gtk::pass(1);
  return {window, std::move(screens)};
}

}  // namespace orivex::bench
