#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <gtk/gtk.h>

#include "../../glib/GRef.h"
#include "../../glib/SignalConnection.h"
#include "../library/MediaCatalog.h"
#include "../library/MediaSelection.h"
#include "../library/ThumbnailLoader.h"
#include "MediaList.h"
#include "PhotoCell.h"

namespace orivex::gtk {

/// What the visitor does in the grid.
struct PhotoGridHandlers {
  std::function<void(const MediaItemPtr&)> toggle;        ///< select, or take back
  std::function<void(std::size_t position)> open;         ///< see it large
  std::function<void(const MediaItemPtr&)> broken;        ///< what the visitor sees turns out to be so
  std::function<void(GtkDirectionType direction)> leave;  ///< to the next or the previous stop of the Tab key
};

/// The scrolling grid of an album. Only what can be seen asks for its thumbnail. Main thread.
class PhotoGrid {
 public:
  PhotoGrid(ThumbnailLoader& thumbnails, const MediaSelection& selection, PhotoGridHandlers handlers);
  PhotoGrid(const PhotoGrid&) = delete;
  PhotoGrid& operator=(const PhotoGrid&) = delete;
  ~PhotoGrid();

  GtkWidget* widget() const { return scrolled_.get(); }

  /// Shows an album, from its beginning when `fromTop`; otherwise what was in view stays there.
  void show(std::shared_ptr<const MediaItems> items, bool fromTop);
  const std::shared_ptr<const MediaItems>& items() const { return list_.items(); }

  /// Where an item stands; nothing when the album does not hold it.
  std::optional<std::size_t> positionOf(const MediaItemPtr& item) const;

  /// Draws the marks anew.
  void selectionChanged();

  /// Brings an item into view and gives it the keyboard, once it is there to take it.
  void focus(std::size_t position);

  /// Cells that can be seen and have their thumbnails, or are known to have none.
  std::size_t shownThumbnails() const;

 private:
  GtkListItemFactory* factoryNew();
  void bind(GtkListItem* row);
  void listenToInput();
  void tapped(GtkGesture* click, double x, double y);
  void longPressed(GtkGesture* press, double x, double y);
  bool keyPressed(guint key, GdkModifierType modifiers);

  /// Those that show something, in their order.
  std::vector<PhotoCell*> cells() const;
  PhotoCell* cellAt(double x, double y, graphene_point_t& inside) const;
  PhotoCell* focusedCell() const;
  bool isInView(const PhotoCell& cell) const;
  void setMarks(PhotoCell& cell) const;
  void loadLater();
  void load();
  void takeFocus();
  void fitColumns();
  void reveal();
  bool revealMore(gint64 frameTime);

  ThumbnailLoader& thumbnails_;
  const MediaSelection& selection_;
  const PhotoGridHandlers handlers_;
  MediaList list_;
  GRef<GtkWidget> scrolled_;
  GtkWidget* view_ = nullptr;
  std::optional<std::size_t> wantsFocus_;
  guint loading_ = 0;       // GLib source
  guint revealing_ = 0;     // tick callback
  gint64 revealStart_ = 0;  // frame time in microseconds; 0 before the first frame with a long album
  SignalConnections connections_;
};

}  // namespace orivex::gtk
