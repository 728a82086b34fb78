#pragma once

#include <functional>
#include <memory>

#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include "../../glib/SignalConnection.h"
#include "../HeldKeys.h"
#include "../views/ViewNode.h"
#include "FocusKeeper.h"

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::gtk {

/// A window of screens, with its scene, which a widget of the host shows: all of a GTK window, or a part of one.
class HostWindow {
 public:
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  virtual ~HostWindow();

  /// The one that the widget is in; null while it is in none.
  GtkWindow* gtkWindow() const { return gtkWindow_; }
  /// The widget; its child shows the screens.
  GtkOverlay* overlay() const { return overlay_; }
  const std::shared_ptr<Window>& window() const { return window_; }
  const std::shared_ptr<WindowScene>& scene() const { return scene_; }

  /// The keys that are down in the GTK window now.
  const HeldKeys::Keys& heldKeys() const;

  /// The host has destroyed the GTK window, which may still be referred to. May destroy this object.
  virtual void windowDestroyed() = 0;

 protected:
  /// `overlay` outlives this object; `ended` destroys it.
  HostWindow(GtkOverlay* overlay, MainQueue& mainQueue, std::function<void(const HostWindow&)> ended);

  /// Destroys this object.
  void end();

  void setGtkWindow(GtkWindow* window);

  /// Ends the screens and takes their widgets away; the first thing that a derived class does in its end.
  void clear();

  GtkWidget* screens() const { return root_->widget(); }

 private:
  void connectBackInput();
  GtkWidget* focused() const;
  /// Null while the focus is elsewhere.
  WebKitWebView* focusedPage() const;

  GtkOverlay* const overlay_;
  MainQueue& mainQueue_;
  const std::function<void(const HostWindow&)> ended_;
  GtkWindow* gtkWindow_ = nullptr;
  std::shared_ptr<Window> window_ = std::make_shared<Window>();
  std::shared_ptr<WindowScene> scene_ = std::make_shared<WindowScene>();
  std::unique_ptr<ViewNode> root_;
  std::unique_ptr<FocusKeeper> focus_;  // as `keys_`, null outside of a GTK window
  std::unique_ptr<HeldKeys> keys_;
  SignalConnections connections_;
};

}  // namespace orivex::gtk
