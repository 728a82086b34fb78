#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../../glib/GRef.h"
#include "../../glib/SignalConnection.h"
#include "../library/MediaCatalog.h"
#include "../library/ThumbnailLoader.h"

#include "orivex/platform/base/Observers.h"

namespace orivex::gtk {

/// The list of albums that drops down over the grid, and the mask under it. Main thread.
class AlbumMenu {
 public:
  /// `chosen` gets the folder of the album, empty for the album of everything. `closed` is called when the menu goes,
  /// chosen from or not. `browse`: the visitor looks elsewhere.
  struct Handlers {
    std::function<void(const std::string& folder)> chosen;
    std::function<void()> browse;
    std::function<void()> closed;
  };
  AlbumMenu(ThumbnailLoader& thumbnails, Handlers handlers);
  AlbumMenu(const AlbumMenu&) = delete;
  AlbumMenu& operator=(const AlbumMenu&) = delete;
  ~AlbumMenu();

  GtkWidget* widget() const { return mask_.get(); }
  bool isOpen() const;

  /// Drops down with the albums of `catalog`; the one of `folder` has the check mark.
  void open(const MediaCatalog& catalog, const std::string& folder);
  void close();

  /// While it is open: albums that have come join at the end, and nothing moves under the finger. What has changed
  /// besides shows at the next opening.
  void update(const MediaCatalog& catalog);

 private:
  void build();
  GtkWidget* rowNew(const Album& album);
  void addRows();
  bool addSomeRows();

  ThumbnailLoader& thumbnails_;
  const Handlers handlers_;
  std::vector<Album> albums_;
  std::size_t rowCount_ = 0;  // of the first albums
  std::string folder_;
  GRef<GtkWidget> mask_;
  GtkWidget* revealer_ = nullptr;
  GtkWidget* list_ = nullptr;
  guint adding_ = 0;  // tick callback
  std::vector<Subscription> covers_;
  SignalConnections connections_;
};

}  // namespace orivex::gtk
