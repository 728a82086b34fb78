#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <adwaita.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "../ui/Canvas.h"
#include "MediaCatalog.h"
#include "ThumbnailLoader.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/MediaProbe.h"

namespace orivex::gtk {

/// One large picture with its neighbours beside it, to swipe through. Main thread; decodes on worker threads.
class PreviewStrip final : private CanvasDelegate {
 public:
  struct Handlers {
    std::function<void(std::size_t position)> moved;  ///< the visitor has swiped to another position
    std::function<void()> tapped;
  };

  PreviewStrip(MainQueue& queue, const MediaProbe& probe, ThumbnailLoader& thumbnails, Handlers handlers);
  ~PreviewStrip() override;

  GtkWidget* widget() const { return canvas_.get(); }

  void show(std::shared_ptr<const MediaItems> items, std::size_t position);
  /// Lets go of all pictures.
  void clear();

  /// Shows the frame of a playing video in place of the picture at the position; null brings the picture back.
  void showFrame(GRef<GdkTexture> frame);

  /// Slides to the next item, or the previous one; past either end it springs back.
  void step(int direction);

 private:
  struct Picture {
    GRef<GdkTexture> texture;
    bool isBroken = false;
  };

  int minimumSize(GtkOrientation orientation) override;
  void allocate(int width, int height) override;
  void snapshot(GtkSnapshot* snapshot) override;
  void drawItem(GtkSnapshot* snapshot, std::size_t position, double left);

  MediaItemPtr itemAt(std::ptrdiff_t position) const;
  void loadNext();
  void load(const MediaItemPtr& item);
  void forgetFarPictures();
  void dragBegun(GtkGestureDrag* drag, double x, double y);
  void dragged(GtkGestureDrag* drag, double x, double y);
  void dragEnded(GtkGestureDrag* drag, double x, double y);
  void slideTo(double offset);
  void slideEnded(AdwAnimation* animation);

  MainQueue& queue_;
  const MediaProbe& probe_;
  ThumbnailLoader& thumbnails_;
  const Handlers handlers_;
  GRef<GtkWidget> canvas_;
  std::shared_ptr<const MediaItems> items_;
  std::size_t position_ = 0;
  double offset_ = 0;  // points by which the strip is dragged; the next item comes in from the right at negative ones
  gint64 dragStart_ = 0;  // microseconds
  std::map<MediaItemPtr, Picture> pictures_;
  GRef<GdkTexture> frame_;
  bool isLoading_ = false;
  GRef<AdwAnimation> slide_;
  std::vector<SignalConnection> connections_;
  SignalConnection slideDone_;
  Alive alive_;
};

}  // namespace orivex::gtk
