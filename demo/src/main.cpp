#include <iostream>
#include <optional>

#include <adwaita.h>

#include "ChatLauncher.h"
#include "DemoServer.h"
#include "GObjects.h"

#include "orivex/gtk/Gtk.h"

namespace {

using namespace orivex;
using namespace orivex::demo;

/// The shop: one window, its chat and the server that answers there.
class Shop {
 public:
  explicit Shop(AdwApplication* application) : application_(application) {
    connectTo<&Shop::activate>(application, "activate", this);
  }

 private:
  void activate(GtkApplication* /*application*/) {
    gtk::install();
    auto* const window = GTK_WINDOW(adw_application_window_new(GTK_APPLICATION(application_)));
    gtk_window_set_default_size(window, 360, 720);
    auto* const button = gtk_button_new_with_label("联系客服");
    gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
    connectTo<&Shop::contact>(button, "clicked", this);
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(window), button);
    launcher_.emplace(gtk::attach(window), std::make_shared<OVKFApiConversationDelegate>());
    server_.emplace(DemoServer::Handlers{.started = [this](const std::string& address) { address_ = address; },
                                         .failed = [](const std::string& reason) { std::cerr << reason << '\n'; }});
    gtk_window_present(window);
  }

  void contact(GtkButton* /*button*/) {
    if (!address_.empty()) launcher_->open(address_, {}, nullptr);
  }

  AdwApplication* application_;
  std::string address_;
  std::optional<DemoServer> server_;
  std::optional<ChatLauncher> launcher_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const ObjectPtr<AdwApplication> application(adw_application_new("com.orivex.Demo", G_APPLICATION_NON_UNIQUE));
  const Shop shop(application.get());
  return g_application_run(G_APPLICATION(application.get()), argumentCount, arguments);
}
