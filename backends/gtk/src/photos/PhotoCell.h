#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "MediaItem.h"
#include "ThumbnailStore.h"

#include "orivex/platform/base/Subscription.h"

namespace orivex::gtk {

/// One square of the grid: the picture, a video's length, and the circle that selects. It draws everything by itself,
/// since scrolling binds dozens of cells at a time: a cell is one widget, and binding it touches no other. Owned by
/// its widget.
class PhotoCell {
 public:
  /// The cells of a grid that live. A grid widget does not always say when it lets go of one.
  using Roster = std::set<PhotoCell*>;

  /// A fresh floating widget with its cell, which is in `roster` while it lives.
  static GtkWidget* make(std::shared_ptr<Roster> roster);
  /// The cell of `widget`; null when it is another kind of widget.
  static PhotoCell* of(GtkWidget* widget);

  explicit PhotoCell(GtkWidget* widget) : widget_(widget) {}
  PhotoCell(const PhotoCell&) = delete;
  PhotoCell& operator=(const PhotoCell&) = delete;
  ~PhotoCell();

  GtkWidget* widget() const { return widget_; }
  const MediaItemPtr& item() const { return item_; }

  /// Shows another item, of which nothing is known yet; null empties the cell.
  void bind(MediaItemPtr item);
  void setThumbnail(const LoadedThumbnail& thumbnail);
  bool isBroken() const { return thumbnail_ && thumbnail_->isBroken(); }
  bool hasThumbnail() const { return thumbnail_.has_value(); }

  /// `number`: the place in the selection, 0 when not selected. `isExcluded` dims what cannot be selected now.
  void setMarks(std::size_t number, bool isExcluded);

  /// Whether a tap there means the circle. In the cell's points; the hot area is a fingertip's.
  bool isOnCircle(double x, double y) const;

  /// The wait for the thumbnail, while there is one.
  void setRequest(Subscription request) { request_ = std::move(request); }
  bool isWaiting() const { return static_cast<bool>(request_); }

  void snapshot(GtkSnapshot* snapshot);

 private:
  void drawPicture(GtkSnapshot* snapshot, float side) const;
  void drawLength(GtkSnapshot* snapshot, float side);
  void drawCircle(GtkSnapshot* snapshot, float side);
  void tellAssistiveTechnology() const;

  GtkWidget* const widget_;
  std::shared_ptr<Roster> roster_;
  MediaItemPtr item_;
  std::optional<LoadedThumbnail> thumbnail_;
  std::size_t number_ = 0;
  bool isExcluded_ = false;
  GRef<PangoLayout> numberText_;
  GRef<PangoLayout> lengthText_;
  Subscription request_;
};

}  // namespace orivex::gtk
