#include "FrameView.h"

#include <cmath>

#include "../av/FrameFeed.h"

namespace orivex::gtk {
namespace {

graphene_rect_t rectangle(double x, double y, double width, double height) {
  return {{static_cast<float>(x), static_cast<float>(y)}, {static_cast<float>(width), static_cast<float>(height)}};
}

}  // namespace

void FrameView::show(GdkTexture* frame) {
  frame_ = GRef<GdkTexture>::share(frame);
  gtk_widget_queue_draw(widget_.get());
}

void FrameView::snapshot(GtkSnapshot* snapshot) {
  if (!frame_) return;
  const double width = gtk_widget_get_width(widget_.get());
  const double height = gtk_widget_get_height(widget_.get());
  const auto size = placedSize({static_cast<double>(gdk_texture_get_width(frame_.get())),
                                static_cast<double>(gdk_texture_get_height(frame_.get()))},
                               {width, height});
  // On whole pixels, where a frame that has the right size already need not be computed anew.
  const auto bounds =
      rectangle(std::floor((width - size.width) / 2), std::floor((height - size.height) / 2), size.width, size.height);
  const auto area = rectangle(0, 0, width, height);
  gtk_snapshot_push_clip(snapshot, &area);
  gtk_snapshot_append_texture(snapshot, frame_.get(), &bounds);
  gtk_snapshot_pop(snapshot);
}

}  // namespace orivex::gtk
