#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../files/FileDialog.h"
#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "EmptyPage.h"
#include "grid/AlbumMenu.h"
#include "grid/PhotoGrid.h"
#include "library/MediaLibrary.h"
#include "library/MediaSelection.h"
#include "library/ThumbnailLoader.h"
#include "preview/PhotoPreview.h"

#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {

/// Where the sheet's photos come from.
struct PhotoSources {
  std::vector<MediaRoot> roots;
  ThumbnailCache thumbnails;
};

/// What the photo library's sheet holds: albums, grid, preview, and the buttons around them. Main thread.
class PhotoSheet {
 public:
  struct Handlers {
    std::function<void(PhotoSelection)> confirmed;
    std::function<void()> cancelled;
  };

  PhotoSheet(PipelineThreads threads, const MediaReader& reader, PhotoSources sources,
             const PhotoLibraryOptions& options, Handlers handlers);
  PhotoSheet(const PhotoSheet&) = delete;
  PhotoSheet& operator=(const PhotoSheet&) = delete;
  ~PhotoSheet() = default;

  /// As high as its parent lets it be.
  GtkWidget* widget() const { return content_.get(); }

  /// The application is no longer in front: a video must not go on behind another one.
  void pause() { preview_.stop(); }

  const PhotoGrid& grid() const { return grid_; }

 private:
  void build();
  GtkWidget* header();
  GtkWidget* footer();
  GtkWidget* waitingPage();
  void update(std::shared_ptr<const MediaCatalog> catalog);
  void showAlbum(bool fromTop);
  const Album& album();
  void chooseAlbum(const std::string& folder);
  void browse();
  void browsed(const std::vector<std::string>& paths);
  MediaItemPtr find(const std::string& path) const;
  void toggle(const MediaItemPtr& item);
  void dropBroken(const MediaItemPtr& item);
  void open(std::size_t position);
  void previewClosed(const MediaItemPtr& last);
  void selectionChanged();
  void leaveGrid(GtkDirectionType direction);

  void mapped();
  bool goBack();
  void showToast(const std::string& text);

  MainQueue& queue_;
  const std::vector<MediaRoot> roots_;
  const MediaFilter filter_;
  const Handlers handlers_;
  MediaSelection selection_;
  ThumbnailLoader thumbnails_;
  PhotoGrid grid_;
  AlbumMenu menu_;
  PhotoPreview preview_;
  std::shared_ptr<const MediaCatalog> catalog_;
  EmptyPage empty_;
  Album browsed_{tr("浏览"), "browsed:", std::make_shared<MediaItems>()};  // no folder has this name
  std::string folder_;  // of the album that is shown; empty for that of everything
  GRef<GtkWidget> content_;
  bool wasMapped_ = false;
  GtkWidget* toast_ = nullptr;
  std::unique_ptr<Timer> toastEnd_;
  GtkWidget* pages_ = nullptr;
  GtkWidget* waiting_ = nullptr;
  GtkWidget* albumName_ = nullptr;
  GtkWidget* albumButton_ = nullptr;
  GtkWidget* browser_ = nullptr;  // header and albums, which the preview covers
  GtkWidget* original_ = nullptr;
  GtkWidget* originalText_ = nullptr;
  GtkWidget* confirm_ = nullptr;
  SignalConnections connections_;
  std::unique_ptr<FileDialog> chooser_;
  MediaLibrary library_;  // last: it tells the others
};

}  // namespace orivex::gtk
