#pragma once

#include <gtk/gtk.h>

#include "../glib/GRef.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// A view that shows a widget that was made elsewhere.
class WidgetView : public View {
 public:
  explicit WidgetView(GRef<GtkWidget> widget) : widget_(std::move(widget)) {}
  GtkWidget* widget() const { return widget_.get(); }

 private:
  GRef<GtkWidget> widget_;
};

/// A view that shows an unmoving picture.
class PaintableView : public View {
 public:
  explicit PaintableView(GRef<GdkPaintable> paintable) : paintable_(std::move(paintable)) {}
  GdkPaintable* paintable() const { return paintable_.get(); }

 private:
  GRef<GdkPaintable> paintable_;
};

}  // namespace orivex::gtk
