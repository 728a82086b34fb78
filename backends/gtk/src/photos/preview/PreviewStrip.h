#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <adwaita.h>

#include "../../glib/GRef.h"
#include "../../glib/SignalConnection.h"
#include "../../ui/Canvas.h"
#include "../library/MediaCatalog.h"
#include "../library/ThumbnailLoader.h"
#include "LargePictures.h"
#include "PictureZoom.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// One large picture with its neighbours beside it, to swipe through and to look at more closely: by two fingers, by a
/// double tap, by steps. Main thread.
class PreviewStrip final : private CanvasDelegate {
 public:
  struct Handlers {
    std::function<void(std::size_t position)> moved;  ///< the visitor has swiped to another position
    std::function<void()> tapped;                     ///< the first tap of two counts as well
  };

  PreviewStrip(MainQueue& queue, const MediaReader& reader, ThumbnailLoader& thumbnails, Handlers handlers);
  ~PreviewStrip() override;

  GtkWidget* widget() const { return canvas_.get(); }

  void show(std::shared_ptr<const MediaItems> items, std::size_t position);
  /// Lets go of all pictures.
  void clear();

  /// Shows the frame of a playing video in place of the picture at the position; null brings the picture back.
  void showFrame(GRef<GdkTexture> frame);

  /// Ends a slide under way where it leads.
  void finishSlide();

  /// Slides to the next item, or the previous one; past either end it springs back.
  void step(int direction);

  /// Shows the picture closer by a step, less close at a negative `direction`, or as a whole at 0. Videos stay as they
  /// are.
  void zoomStep(int direction);

  /// Looks at another part of a picture that shows closer: to the right and below at 1, to the left and above at -1.
  /// Returns whether there is more of it.
  bool pan(int across, int down);

 private:
  int minimumSize(GtkOrientation orientation, int forSize) override;
  void allocate(int width, int height) override;
  void snapshot(GtkSnapshot* snapshot) override;
  void drawItem(GtkSnapshot* snapshot, std::size_t position, double left);

  MediaItemPtr itemAt(std::ptrdiff_t position) const;
  MediaItemPtr current() const { return itemAt(static_cast<std::ptrdiff_t>(position_)); }
  void requestPictures();
  GdkTexture* textureOf(const MediaItemPtr& item) const;
  void zoomTo(double scale, Point focus);
  Point fromMiddle(double x, double y) const;
  void dragged(double x, double y);
  void dragEnded(double x, double y);
  void tapped(Point place);
  void pinchBegun();
  void abandonSlide();
  void slideTo(double offset);
  void slideEnded();

  ThumbnailLoader& thumbnails_;
  const Handlers handlers_;
  GRef<GtkWidget> canvas_;
  std::shared_ptr<const MediaItems> items_;
  std::size_t position_ = 0;
  Size size_;
  double offset_ = 0;  // points by which the strip is dragged; the next item comes in from the right at negative ones
  gint64 dragStart_ = 0;  // microseconds
  PictureZoom zoom_;
  Translation zoomedFrom_;  // where the picture lay when the drag began
  double pinchedFrom_ = 1;  // how large it was when the pinch began
  gint64 lastTap_ = 0;      // microseconds
  Point lastTapPlace_;
  bool isPinching_ = false;
  GtkGesture* const drag_ = gtk_gesture_drag_new();  // the canvas owns it
  LargePictures pictures_;
  GRef<GdkTexture> frame_;
  GRef<AdwAnimation> slide_;
  SignalConnections connections_;
  SignalConnection slideDone_;
};

}  // namespace orivex::gtk
