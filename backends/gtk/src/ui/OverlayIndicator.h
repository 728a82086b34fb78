#pragma once

#include <gtk/gtk.h>

#include "../glib/GRef.h"

namespace orivex::gtk {

/// The picture of the progress overlay: a spinner, a ring that fills, or an information mark, one at a time and in the
/// text's colour.
class OverlayIndicator {
 public:
  OverlayIndicator();
  OverlayIndicator(const OverlayIndicator&) = delete;
  OverlayIndicator& operator=(const OverlayIndicator&) = delete;
  ~OverlayIndicator() = default;

  /// Width and height in points.
  static constexpr int size = 44;

  GtkWidget* widget() const { return stack_.get(); }

  void showSpinner();
  /// `fraction` from 0 to 1; what lies outside is taken for the nearer end.
  void showRing(float fraction);
  void showInformationMark();

  /// Stops what moves, for as long as nobody sees it.
  void rest();

 private:
  template <auto draw>
  GtkWidget* drawingNew(GtkAccessibleRole role);
  void drawRing(cairo_t* context) const;
  void drawInformationMark(cairo_t* context) const;
  void show(GtkWidget* page);

  GRef<GtkWidget> stack_;
  GtkWidget* spinner_;
  GtkWidget* ring_;
  GtkWidget* mark_;
  float fraction_ = 0;
};

}  // namespace orivex::gtk
