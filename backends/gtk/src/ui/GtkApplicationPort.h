#pragma once

#include <memory>
#include <vector>

#include "../DesktopLauncher.h"
#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "SessionWatch.h"
#include "windows/AttachedWindow.h"
#include "windows/EmbeddedScreen.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The windows that the host has attached, the widgets in which it shows screens, whether the visitor is at one of the
/// application's windows, attached or not, and the desktop's way to open addresses.
class GtkApplicationPort final : public Application {
 public:
  explicit GtkApplicationPort(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  /// The window's own, made on first use.
  AttachedWindow& attach(GtkWindow* window, const Surroundings& surroundings);

  /// A floating widget, as GTK makes them.
  GtkWidget* embed(std::shared_ptr<ViewController> screen);

  /// Null for a window that was not attached.
  AttachedWindow* find(GtkWindow* window) const;

  /// The window that shows `view`; null for a view on no screen.
  HostWindow* find(const View& view) const;

  /// The one that the visitor sees first; null without any.
  HostWindow* frontWindow() const;

  std::vector<std::shared_ptr<WindowScene>> connectedScenes() const override;
  [[nodiscard]] Subscription observe(ApplicationEvent event, std::function<void()> handler) override;
  bool isRightToLeft() const override { return gtk_widget_get_default_direction() == GTK_TEXT_DIR_RTL; }
  bool canOpen(const Url& url) const override { return launcher_.canOpen(url); }
  void open(const Url& url) override { launcher_.open(url); }

  /// Lets pages open addresses of a further scheme.
  void allow(std::string scheme) { launcher_.allow(std::move(scheme)); }

 private:
  void watchToplevels();
  void toplevelsChanged();
  void forgetDestroyed();
  void activityChanged(GtkWindow* window);
  bool hasActiveWindow() const;
  void updateActivitySoon();
  void updateActivity();
  void forget(const HostWindow& host);

  MainQueue& mainQueue_;
  DesktopLauncher launcher_;
  // The one that was active last comes first, and of one GTK window what covers all of it.
  std::vector<std::unique_ptr<HostWindow>> windows_;
  GRef<GListModel> toplevels_;
  SignalConnection toplevelsChanged_;
  SignalConnections activity_;  // of every window of the application
  Observers<> becameActive_;
  Observers<> willResignActive_;
  bool active_ = false;
  SessionWatch session_{[this] { updateActivity(); }};
  Alive alive_;
};

}  // namespace orivex::gtk
