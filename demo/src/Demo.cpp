#include "Demo.h"

#include <csignal>
#include <iostream>
#include <stdexcept>

#include <glib-unix.h>

#include "base/Texts.h"
#include "chat/OrderCard.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/base/Language.h"

namespace orivex::demo {
namespace {

gboolean quit(gpointer application) noexcept {
  g_application_quit(G_APPLICATION(application));
  return G_SOURCE_CONTINUE;
}

// What the event was, on one line of standard output.
void print(const ConversationEvent& event) {
  std::cout << "event " << event.name;
  for (const auto& [key, value] : event.attributes) std::cout << ' ' << key << '=' << value;
  std::cout << std::endl;
}

}  // namespace

Demo::Demo(Options options)
    : options_(std::move(options)),
      settings_(loadSettings()),
      application_(adw_application_new("com.orivex.Demo", G_APPLICATION_NON_UNIQUE)) {
  // As in the desktop entry, which is there once the demo is installed.
  g_set_application_name(text("Orivex 演示商店", "Orivex Demo"));
  options_.applyTo(settings_);
  connectTo<&Demo::activate>(application_.get(), "activate", this);
  connectTo<&Demo::shutDown>(application_.get(), "shutdown", this);
  g_unix_signal_add(SIGINT, quit, application_.get());
  g_unix_signal_add(SIGTERM, quit, application_.get());
}

int Demo::run() {
  return g_application_run(G_APPLICATION(application_.get()), 0, nullptr);
}

void Demo::activate(GtkApplication* application) {
  if (window_) return;
  gtk::install();
  setLanguage("auto");
  window_ = std::make_unique<DemoWindow>(
      application, settings_, options_.frameless,
      DemoWindow::Handlers{.contact = [this] { contact(); },
                           .settingsChanged = [this](const Settings& changed) { settingsChanged(changed); },
                           .clearCache = [] { std::make_shared<OVKFApi>()->clearWebViewCache(); }});
  const auto recorder = std::make_shared<EventRecorder>([this](const ConversationEvent& event) { happened(event); });
  launcher_ = std::make_unique<ChatLauncher>(window_->screens(), recorder);
  if (options_.reportPositions) {
    reporter_ = std::make_unique<PositionReporter>(ADW_APPLICATION_WINDOW(window_->gtkWindow()),
                                                   [this] { return launcher_->current(); });
  }
  if (settings_.server.empty()) startServer();
  gtk_window_present(window_->gtkWindow());
}

void Demo::shutDown(GtkApplication* /*application*/) {
  reporter_.reset();
  launcher_.reset();
  server_.reset();
  window_.reset();
}

void Demo::startServer() {
  if (server_) return;
  try {
    server_ = std::make_unique<DemoServer>([this](std::int64_t count) { window_->shop().showUnread(count); });
    std::cout << "server " << server_->address() << std::endl;
  } catch (const std::runtime_error& error) {
    std::cerr << error.what() << '\n';
    window_->showToast(text("聊天服务器没有启动", "The chat server did not start"));
  }
}

void Demo::contact() {
  const auto& shop = window_->shop();
  const auto server = settings_.server.empty() && server_ ? server_->address() : settings_.server;
  if (server.empty()) {
    window_->showToast(text("请先在设置中填写服务器地址", "Enter a server’s address in the settings first"));
    return;
  }
  launcher_->open(server, settings_, shop.bringsOrder() ? cardOf(shop.order()) : nullptr);
}

void Demo::happened(const ConversationEvent& event) {
  if (reporter_ && reporter_->take(event)) return;
  if (event.name == unreadEvent) window_->shop().showUnread(std::stoll(event.attributes.at("count")));
  print(event);
  window_->show(event);
}

void Demo::settingsChanged(const Settings& settings) {
  settings_ = settings;
  saveSettings(settings_);
  window_->apply(settings_);
  if (settings_.server.empty()) startServer();
}

}  // namespace orivex::demo
