#pragma once

#include <gtk/gtk.h>

#include "../glib/GRef.h"

namespace orivex::gtk {

/// A picture whose content changes from frame to frame without a new layout of the widget that shows it. It has no size
/// of its own: a frame fills the area it is given when that costs little of its edges, and else shows as a whole in the
/// middle. Main thread.
class FramePaintable {
 public:
  FramePaintable();

  GdkPaintable* paintable() const { return paintable_.get(); }

  /// Null leaves nothing to see.
  void show(GdkTexture* frame);

  /// Whether the frames are shown as in a mirror.
  void setMirrored(bool mirrored);

 private:
  GRef<GdkPaintable> paintable_;
};

}  // namespace orivex::gtk
