#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <webkit/webkit.h>

#include "LogLines.h"
#include "MainLoop.h"
#include "SocketServer.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/sdk/OrivexSDK.h"

namespace orivex::gtk {

/// Path of the chat page on every server.
inline const std::string chatPath = "/api/oauth2/ciphertext/app/client_chat";

/// Keeps what the page raised.
struct EventRecorder final : OVKFApiConversationDelegate {
  using Event = std::pair<std::string, std::map<std::string, std::string>>;
  std::vector<Event> events;
  void trackEvent(const std::string& name, const std::map<std::string, std::string>& attributes) override {
    events.emplace_back(name, attributes);
  }
};

/// A host window of 360 by 720 points on the screen, its own or a given one, and the chat screens that it shows.
class ScreenFixture : public ::testing::Test {
 protected:
  explicit ScreenFixture(const Surroundings& surroundings = {}, GtkWindow* window = nullptr);
  ~ScreenFixture() override;

  /// A chat screen whose session runs against `server`, not shown yet.
  std::shared_ptr<OVKFApi> startChat(const std::string& server);

  /// Presents it and waits until the page raises the event "ready".
  std::shared_ptr<OVKFApi> openChat(const std::string& server);

  bool raised(const std::string& event) const;

  /// Result of a script in the page, as text.
  static std::string evaluate(OVKFApi& chat, const std::string& script);

  const std::shared_ptr<Window>& window() const { return window_; }
  GtkWindow* gtkWindow() const { return gtkWindow_; }

  /// Gives the window the keyboard: no window manager does it.
  void takeKeyboard() const;

  /// What the visitor reads in the component's panel over the window or another one; empty while none shows.
  std::string panelText() const { return panelText(gtkWindow_); }
  static std::string panelText(GtkWindow* window);

  LogLines log;
  const std::shared_ptr<EventRecorder> recorder = std::make_shared<EventRecorder>();

 private:
  GtkWindow* gtkWindow_;
  std::shared_ptr<Window> window_;
};

/// Result of a script in `view` as text.
std::string evaluateIn(WebKitWebView* view, const std::string& script);

/// A server that answers the chat path with a page of this body, and every other path with 404.
SocketServer::Handler servePage(const std::string& body);

/// A page's script that raises an event.
std::string raise(const std::string& event);

}  // namespace orivex::gtk
