// A window with a button that opens the chat. Usage: shop SERVER [--open]
#include "Support.h"

#include <orivex/gtk/Gtk.h>

namespace {

struct Shop {
  std::shared_ptr<Support> support;
  std::shared_ptr<orivex::Window> window;
  bool opensAtOnce = false;
};

void openChat(Shop* shop) {
  shop->support->open(*shop->window->rootViewController(), "订单 2024 0611");
}

void activate(GtkApplication* application, Shop* shop) {
  auto* const window = GTK_WINDOW(gtk_application_window_new(application));
  gtk_window_set_default_size(window, 360, 720);
  GtkWidget* const button = gtk_button_new_with_label("联系客服");
  g_signal_connect_swapped(button, "clicked", G_CALLBACK(openChat), shop);
  gtk_window_set_child(window, button);

  orivex::gtk::install();
  shop->window = orivex::gtk::attach(window);
  gtk_window_present(window);
  if (shop->opensAtOnce) openChat(shop);
}

}  // namespace

int main(int argc, char** argv) {
  Shop shop{std::make_shared<Support>(argc > 1 ? argv[1] : "http://127.0.0.1:8700"), nullptr, argc > 2};
  GtkApplication* const application = gtk_application_new("com.example.Shop", G_APPLICATION_NON_UNIQUE);
  g_signal_connect(application, "activate", G_CALLBACK(activate), &shop);
  const int status = g_application_run(G_APPLICATION(application), 0, nullptr);
  shop = {};
  g_object_unref(application);
  return status;
}
