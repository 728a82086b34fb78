#pragma once

#include <functional>

#include <gtk/gtk.h>

#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// What a visitor without a finger goes back with: Escape, Alt and the arrow to the left, the back key, and the mouse's
/// back button. A page sees the keys first and hands on what it does not take; see `addBackKeys`.
class BackInput {
 public:
  /// Listens on `screens`, the canvas around all pages of a window, which outlives this object. `goBack` returns
  /// whether something went back; what did not stays for the host.
  BackInput(GtkWidget* screens, std::function<bool()> goBack);
  BackInput(const BackInput&) = delete;
  BackInput& operator=(const BackInput&) = delete;
  ~BackInput() = default;

 private:
  bool isInPage() const;

  GtkWidget* const screens_;
  std::function<bool()> goBack_;
  SignalConnections connections_;
};

}  // namespace orivex::gtk
