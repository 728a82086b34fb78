#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "OverlayIndicator.h"

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

struct OverlayLook {
  Size minimumSize;
  OverlayStyle style = OverlayStyle::light;
  OverlayMask mask = OverlayMask::none;
};

/// The widgets of the progress overlay inside one GtkOverlay: a mask over everything and, in its middle, a rounded
/// panel with an indicator over a text, and a "✕" where what it shows can be given up. It fades in when it is first
/// shown and out when it is dismissed; the mask takes pointer and keys only in between, and leaves the keyboard focus
/// where it is.
class OverlayPanel {
 public:
  explicit OverlayPanel(GtkOverlay* parent);
  OverlayPanel(const OverlayPanel&) = delete;
  OverlayPanel& operator=(const OverlayPanel&) = delete;
  /// Takes the panel away at once.
  ~OverlayPanel();

  /// False once the window that shows it is gone.
  bool isOver(GtkOverlay* parent) const { return parent_ == parent; }

  /// `giveUp` is what "✕" and Escape do; empty, there is none.
  void showSpinner(const OverlayLook& look, std::function<void()> giveUp);
  void showRing(const OverlayLook& look, float fraction, const std::string& status, std::function<void()> giveUp);
  void showInfo(const OverlayLook& look, const std::string& status);
  void dismiss();

 private:
  void build();
  void apply(const OverlayLook& look);
  void appear(const OverlayLook& look, const std::string& status, const char* spoken, std::function<void()> giveUp);
  void takeInput(bool taking);
  int linesThatFit() const;
  void fadeTo(double opacity);
  void cancel();

  GtkOverlay* parent_;
  OverlayIndicator indicator_;
  GRef<GtkWidget> mask_;
  GtkWidget* panel_ = nullptr;
  GtkWidget* label_ = nullptr;
  GtkWidget* close_ = nullptr;
  std::function<void()> giveUp_;
  std::string spoken_;
  bool shown_ = false;  // false while it fades out, too
  GRef<AdwAnimation> fade_;
  GRef<GtkEventController> keys_;  // of the parent, while the mask takes input
  SignalConnection faded_;
  SignalConnection keyPressed_;
  SignalConnection closeClicked_;
  SignalConnection destroyed_;
};

}  // namespace orivex::gtk
