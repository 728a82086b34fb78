#pragma once

#include <functional>
#include <string>

#include <adwaita.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

struct OverlayAppearance {
  Size minimumSize;
  OverlayStyle style = OverlayStyle::light;
  OverlayMask mask = OverlayMask::none;
};

/// The widgets of the progress overlay inside one GtkOverlay: a mask over everything and, in its middle, a rounded
/// panel with an indicator over a text (a spinner, a ring that fills or an information mark), and a "✕" where what it
/// shows can be given up. It fades in when it is first shown and out when it is dismissed; the mask takes pointer and
/// keys only in between, and leaves the keyboard focus where it is.
class OverlayPanel {
 public:
  explicit OverlayPanel(GtkOverlay* parent);
  OverlayPanel(const OverlayPanel&) = delete;
  OverlayPanel& operator=(const OverlayPanel&) = delete;
  /// Takes the panel away at once.
  ~OverlayPanel();

  /// False once the window that shows it is gone.
  bool isOver(GtkOverlay* parent) const { return parent_ == parent; }

  /// `detail` is a line under all else, none when it is empty. `onCancel` is what "✕" and Escape do; empty, there is
  /// none. `fraction` goes from 0 to 1; what lies outside is taken for the nearer end.
  void showSpinner(const OverlayAppearance& appearance, const std::string& detail, std::function<void()> onCancel);
  void showRing(const OverlayAppearance& appearance, float fraction, const std::string& status,
                const std::string& detail, std::function<void()> onCancel);
  void showInfo(const OverlayAppearance& appearance, const std::string& status);
  void dismiss();

 private:
  void build();
  GtkWidget* indicatorsNew();
  GtkWidget* drawingNew(GtkAccessibleRole role);
  void setDetail(const std::string& detail);
  void setFraction(double fraction);
  void apply(const OverlayAppearance& appearance);
  void appear(const OverlayAppearance& appearance, GtkWidget* indicator, const std::string& status, const char* spoken,
              std::function<void()> onCancel);
  void takeInput(bool taking);
  int linesThatFit() const;
  void fadeTo(double opacity);
  void cancel();

  GtkOverlay* parent_;
  GRef<GtkWidget> mask_;
  GtkWidget* panel_ = nullptr;
  GtkWidget* indicators_ = nullptr;  // shows one of the next three
  GtkWidget* spinner_ = nullptr;
  GtkWidget* ring_ = nullptr;
  GtkWidget* informationMark_ = nullptr;
  double fraction_ = 0;  // of the ring
  GtkWidget* label_ = nullptr;
  GtkWidget* detail_ = nullptr;
  GtkWidget* close_ = nullptr;
  std::function<void()> onCancel_;
  int quarter_ = 0;     // of the ring, of which each is announced once
  bool shown_ = false;  // false while it fades out, too
  GRef<AdwAnimation> fade_;
  GRef<GtkEventController> keys_;  // of the parent, while the mask takes input
  SignalConnection faded_;
  SignalConnection keyPressed_;
  SignalConnections connections_;
};

}  // namespace orivex::gtk
