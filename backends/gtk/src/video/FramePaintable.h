#pragma once

#include <gtk/gtk.h>

#include "glib/GRef.h"

namespace orivex::gtk {

/// A picture whose content changes from frame to frame without a new layout of the widget that shows it. It has no size
/// of its own: a frame lies in the middle of the area it is given, as large as `placedSize` says. Main thread.
class FramePaintable {
 public:
  FramePaintable();

  GdkPaintable* paintable() const { return paintable_.get(); }

  /// Null leaves nothing to see.
  void show(GdkTexture* frame);

 private:
  GRef<GdkPaintable> paintable_;
};

}  // namespace orivex::gtk
