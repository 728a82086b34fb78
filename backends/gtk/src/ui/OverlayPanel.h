#pragma once

#include <string>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

/// The widgets of the progress overlay inside one GtkOverlay: a mask that takes input and a rounded panel with a
/// spinner, a ring or an information mark over a line of text.
class OverlayPanel {
 public:
  OverlayPanel(GtkOverlay* parent, Size minimumSize, OverlayStyle style, OverlayMask mask);
  OverlayPanel(const OverlayPanel&) = delete;
  OverlayPanel& operator=(const OverlayPanel&) = delete;
  ~OverlayPanel();

  /// False once the window that shows it is gone.
  bool isOver(GtkOverlay* parent) const { return parent_ == parent; }

  void showSpinner();
  void showRing(float fraction, const std::string& status);
  void showInfo(const std::string& status);

 private:
  void show(const char* page, const std::string& status);
  void buildIndicator();
  template <auto draw>
  GtkWidget* drawingNew();
  void drawRing(cairo_t* context) const;
  void drawInformationMark(cairo_t* context) const;
  void parentDestroyed(GtkWidget* parent);

  GtkOverlay* parent_;
  GRef<GtkWidget> mask_;
  GtkWidget* indicator_ = nullptr;
  GtkWidget* spinner_ = nullptr;
  GtkWidget* ring_ = nullptr;
  GtkWidget* label_ = nullptr;
  float fraction_ = 0;
  SignalConnection destroyed_;
};

}  // namespace orivex::gtk
