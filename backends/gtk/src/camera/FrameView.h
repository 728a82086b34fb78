#pragma once

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../ui/Canvas.h"

namespace orivex::gtk {

/// A widget that shows frame after frame without a new layout. A frame lies in its middle, as large as `placedSize`
/// says. Main thread.
class FrameView final : private CanvasDelegate {
 public:
  FrameView() = default;
  ~FrameView() override { canvasForget(widget_.get()); }

  GtkWidget* widget() const { return widget_.get(); }

  /// Null leaves nothing to see.
  void show(GdkTexture* frame);

 private:
  int minimumSize(GtkOrientation /*orientation*/, int /*forSize*/) override { return 0; }
  void allocate(int /*width*/, int /*height*/) override {}
  void snapshot(GtkSnapshot* snapshot) override;

  const GRef<GtkWidget> widget_ = GRef<GtkWidget>::sink(canvasNew(*this));
  GRef<GdkTexture> frame_;
};

}  // namespace orivex::gtk
