#pragma once

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

/// The bar of an offer at the top of one GtkOverlay, until this object goes: a text, "重试" and "✕".
class OverlayBar {
 public:
  OverlayBar(GtkOverlay* parent, const OverlayOffer& offer);
  OverlayBar(const OverlayBar&) = delete;
  OverlayBar& operator=(const OverlayBar&) = delete;
  ~OverlayBar();

  /// Brings it above what was put into the GtkOverlay after it.
  void raise();

 private:
  GRef<GtkWidget> bar_;
  SignalConnections connections_;
};

}  // namespace orivex::gtk
