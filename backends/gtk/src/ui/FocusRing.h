#pragma once

#include <functional>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Shows which widget of a window has the keyboard for as long as the visitor uses keys: from the first one on,
/// whatever has opened meanwhile, and until a pointer or a finger comes. By itself GTK waits for a key that moves the
/// focus, and hides it after three seconds.
class FocusRing {
 public:
  /// Leaves the window alone while `applies` says no.
  FocusRing(GtkWindow* window, std::function<bool()> applies);
  FocusRing(const FocusRing&) = delete;
  FocusRing& operator=(const FocusRing&) = delete;
  ~FocusRing();

 private:
  void inputCame(GdkEventType type);

  GtkWindow* const window_;
  const std::function<bool()> applies_;
  bool usesKeys_ = false;
  const GRef<GtkEventController> input_ = GRef<GtkEventController>::adopt(gtk_event_controller_legacy_new());
  SignalConnections connections_;
};

}  // namespace orivex::gtk
