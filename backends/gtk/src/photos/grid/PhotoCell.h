#pragma once

#include <cstddef>
#include <optional>

#include <gtk/gtk.h>

#include "../../glib/GRef.h"
#include "../../ui/Canvas.h"
#include "../library/MediaItem.h"
#include "../library/ThumbnailLoader.h"

#include "orivex/platform/base/Observers.h"

namespace orivex::gtk {

/// One square of the grid: the picture, a video's length, and the circle that selects. It draws everything by itself,
/// since scrolling binds dozens of cells at a time: a cell is one widget, and binding it touches no other. Owned by
/// its widget.
class PhotoCell final : public CanvasDelegate {
 public:
  /// A fresh floating widget with its cell.
  static GtkWidget* make();
  /// The cell of `widget`; null when it is another kind of widget.
  static PhotoCell* of(GtkWidget* widget) { return dynamic_cast<PhotoCell*>(canvasDelegate(widget)); }

  GtkWidget* widget() const { return widget_; }
  const MediaItemPtr& item() const { return item_; }

  /// Shows another item, of which nothing is known yet; null empties the cell.
  void bind(MediaItemPtr item);
  void setThumbnail(const LoadedThumbnail& thumbnail);
  bool hasThumbnail() const { return thumbnail_.has_value(); }

  /// `number`: the place in the selection, 0 when not selected. `isExcluded` dims what cannot be selected now.
  void setMarks(std::size_t number, bool isExcluded);

  /// Whether a tap there means the circle. In the cell's points; the hot area is a fingertip's.
  bool isOnCircle(graphene_point_t point) const;

  /// The wait for the thumbnail, while there is one.
  void setRequest(Subscription request) { request_ = std::move(request); }
  bool isWaiting() const { return static_cast<bool>(request_); }

 private:
  int minimumSize(GtkOrientation orientation, int forSize) override;
  void allocate(int /*width*/, int /*height*/) override {}
  void snapshot(GtkSnapshot* snapshot) override;

  void drawPicture(GtkSnapshot* snapshot, const graphene_rect_t& area) const;
  void drawLength(GtkSnapshot* snapshot, float side);
  void drawCircle(GtkSnapshot* snapshot, float side);
  void updateAccessibility() const;

  GtkWidget* widget_ = nullptr;
  MediaItemPtr item_;
  std::optional<LoadedThumbnail> thumbnail_;
  std::size_t number_ = 0;
  bool isExcluded_ = false;
  GRef<PangoLayout> numberText_;
  GRef<PangoLayout> lengthText_;
  Subscription request_;
};

}  // namespace orivex::gtk
