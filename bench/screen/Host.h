#pragma once

#include <memory>
#include <string>

#include "support/MainLoop.h"
#include "support/SocketServer.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/sdk/OrivexSDK.h"

namespace orivex::bench {

/// Runs a function at every tracking event of a page.
struct Listener final : OVKFApiConversationDelegate {
  explicit Listener(std::function<void()> posted) : posted_(std::move(posted)) {}
  void trackEvent(const std::string& /*name*/, const std::map<std::string, std::string>& /*attributes*/) override {
    posted_();
  }
  std::function<void()> posted_;
};

/// What every measurement on the real device needs: a window for the screens, another for the yardstick, a server.
struct Host {
  GtkWindow* window;
  std::shared_ptr<Window> screens;
  GtkWindow* yardstick;

  std::shared_ptr<OVKFApi> makeChat(const std::string& server, std::function<void()> posted) const {
    auto chat = std::make_shared<OVKFApi>();
    chat->conversionDelegate = std::make_shared<Listener>(std::move(posted));
    chat->startSession(server, "entry", "key", std::make_shared<UserMappingModel>());
    return chat;
  }
};

/// Script that raises a tracking event.
inline const std::string post =
    "window.webkit.messageHandlers.trackEvent.postMessage({name: 'ping', attributes: {page: 'order', step: '2'}});";

/// Serves the page `body` at every address.
inline gtk::SocketServer::Handler serve(const std::string& body) {
  return [body](const std::string&) {
    return gtk::SocketServer::Answer{
        gtk::reply(200, "<!doctype html><meta charset=utf-8><body>" + body, "Content-Type: text/html\r\n")};
  };
}

void measureRoundTrip(const Host& host);
void measureOpening(const Host& host);
void measureBurst(const Host& host);
void measurePhotos(const Host& host);
void measurePanning(const Host& host);
void measureIdleness(const Host& host);
void measureManyScreens(const Host& host, int count);

}  // namespace orivex::bench
