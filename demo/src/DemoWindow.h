#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <adwaita.h>

#include "PhoneFrame.h"
#include "base/GObjects.h"
#include "chat/EventRecorder.h"
#include "chat/EventsPage.h"
#include "settings/Settings.h"
#include "settings/SettingsPage.h"
#include "shop/ShopPage.h"

namespace orivex {
class ViewController;
class Window;
}  // namespace orivex

namespace orivex::demo {

/// The shop's window: its pages with their tabs, as the root screen over which the chat opens.
class DemoWindow {
 public:
  struct Handlers {
    std::function<void()> contact;
    std::function<void(const Settings&)> settingsChanged;
    std::function<void()> clearCache;
  };

  /// `isFrameless`: neither a frame around the window nor buttons for it, as on a phone.
  DemoWindow(GtkApplication* application, const Settings& settings, bool isFrameless, Handlers handlers);
  DemoWindow(const DemoWindow&) = delete;
  DemoWindow& operator=(const DemoWindow&) = delete;
  ~DemoWindow();

  GtkWindow* gtkWindow() const { return window_; }
  const std::shared_ptr<Window>& screens() const { return screens_; }
  ShopPage& shop() { return shop_; }

  /// What covers the window, and whether its root is a navigation controller.
  void apply(const Settings& settings);

  void show(const ConversationEvent& event);

  /// Says something to the customer for a few seconds.
  void showToast(const std::string& message);

 private:
  void buildContent();
  void pageChanged(GObject* stack, GParamSpec* property);
  std::shared_ptr<ViewController> rootFor(bool pushes) const;

  const bool isFrameless_;
  GtkWindow* window_;
  ShopPage shop_;
  EventsPage events_;
  SettingsPage settings_;
  AdwViewStack* pages_;
  AdwViewStackPage* eventsTab_ = nullptr;
  guint unseenEvents_ = 0;
  GtkWidget* titleBar_;
  AdwToastOverlay* toasts_;
  ObjectPtr<GtkWidget> content_;
  std::shared_ptr<Window> screens_;
  PhoneFrame frame_;
  std::optional<bool> pushes_{};
};

}  // namespace orivex::demo
