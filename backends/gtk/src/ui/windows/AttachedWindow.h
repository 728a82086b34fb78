#pragma once

#include <functional>
#include <memory>

#include "../../glib/GRef.h"
#include "../views/ContentWidgets.h"
#include "HostWindow.h"

#include "orivex/gtk/Gtk.h"

namespace orivex::gtk {

/// A GTK window that shows screens: the window's own content, whatever the host puts there in its time, is the root
/// screen.
class AttachedWindow final : public HostWindow {
 public:
  /// `ended` is called once, when the GTK window is destroyed, and destroys this object.
  AttachedWindow(GtkWindow* window, const Surroundings& surroundings, MainQueue& mainQueue,
                 std::function<void(const HostWindow&)> ended);
  ~AttachedWindow() override;

  void setSurroundings(const Surroundings& surroundings);
  void windowDestroyed() override { end(); }

 private:
  void contentChanged();

  const GRef<GtkOverlay> kept_;
  std::shared_ptr<WidgetScreen> content_;
  SignalConnections connections_;
};

}  // namespace orivex::gtk
