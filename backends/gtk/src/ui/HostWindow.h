#pragma once

#include <functional>
#include <memory>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "FocusKeeper.h"
#include "HeldKeys.h"
#include "views/ContentWidgets.h"
#include "views/ViewNode.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::gtk {

/// A GTK window that shows screens, with its scene: the window's own content, whatever the host puts there in its time,
/// is the root screen.
class HostWindow {
 public:
  /// `closed` is called once, when the GTK window is destroyed; it may destroy this object.
  HostWindow(GtkWindow* window, const Surroundings& surroundings, MainQueue& mainQueue, std::function<void()> closed);
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  ~HostWindow();

  GtkWindow* gtkWindow() const { return gtkWindow_; }
  /// Covers the whole window; its child shows the screens.
  GtkOverlay* overlay() const { return overlay_.get(); }
  const std::shared_ptr<Window>& window() const { return window_; }
  const std::shared_ptr<WindowScene>& scene() const { return scene_; }

  /// The keys that are down in the window now.
  const HeldKeys::Keys& heldKeys() const { return keys_.down(); }

  void setSurroundings(const Surroundings& surroundings);

 private:
  void contentChanged();
  void connectBackInput(GtkWidget* screens);
  bool isFocusInPage() const;

  GtkWindow* const gtkWindow_;
  GRef<GtkOverlay> overlay_;
  std::shared_ptr<Window> window_ = std::make_shared<Window>();
  std::shared_ptr<WindowScene> scene_ = std::make_shared<WindowScene>();
  std::shared_ptr<WidgetScreen> content_;
  std::unique_ptr<ViewNode> root_;
  std::unique_ptr<FocusKeeper> focus_;
  HeldKeys keys_{GTK_WIDGET(gtkWindow_), {}, HeldKeys::Repeats::pass};
  SignalConnections connections_;
};

}  // namespace orivex::gtk
