#pragma once

#include <functional>
#include <memory>

#include "HostWindow.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex::gtk {

/// A widget that shows one screen wherever the host puts it. The screen appears and disappears with the widget, and
/// leaves when that is in no window any more.
class EmbeddedScreen final : public HostWindow {
 public:
  /// Makes the widget, `overlay()`, floating: the host alone keeps it. `shown` is called when it has come to the
  /// display, in this window; `ended` once, when the widget is destroyed, and destroys this object.
  EmbeddedScreen(std::shared_ptr<ViewController> screen, MainQueue& mainQueue, std::function<void(GtkWindow*)> shown,
                 std::function<void(const HostWindow&)> ended);
  ~EmbeddedScreen() override;

  void windowDestroyed() override { leave(); }

 private:
  void rootChanged();
  void appear();
  void leave();

  MainQueue& mainQueue_;
  const std::shared_ptr<ViewController> screen_;
  const std::function<void(GtkWindow*)> shown_;
  SignalConnections connections_;
  Alive alive_;
};

}  // namespace orivex::gtk
