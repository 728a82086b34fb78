#pragma once

#include <set>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// Follows the keys that go down and up in a widget, to tell a key that goes down from the repeats of one that is held.
class HeldKeys {
 public:
  /// By their hardware codes.
  using Keys = std::set<guint>;

  /// What becomes of a held key's repeats: they pass, they stop at `widget` as long as it has the focus, or they stop
  /// there even when the focus was elsewhere meanwhile, which may cost a key a second press.
  enum class Repeats { pass, stop, stopAlways };

  /// `down` are held when it begins.
  HeldKeys(GtkWidget* widget, Keys down, Repeats repeats);
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
  ~HeldKeys();

  const Keys& down() const { return down_; }

 private:
  Keys down_;
  const GRef<GtkEventController> keys_ = GRef<GtkEventController>::adopt(gtk_event_controller_key_new());
  const GRef<GtkEventController> focus_ = GRef<GtkEventController>::adopt(gtk_event_controller_focus_new());
  SignalConnections connections_;
};

}  // namespace orivex::gtk
