#pragma once

#include <functional>
#include <memory>

#include "../WorkerPool.h"
#include "../ui/GtkApplicationPort.h"
#include "../ui/Sheet.h"
#include "PhotoSheet.h"

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {

/// The visitor's folders of pictures and videos, in a sheet over the window that asks. Nothing is kept between two
/// sheets, so that an idle host carries no pictures around.
class GtkPhotoLibrary final : public PhotoLibrary {
 public:
  /// `sources` is asked at each opening.
  GtkPhotoLibrary(MainQueue& queue, GtkApplicationPort& application, MediaReader reader,
                  std::function<PhotoSources()> sources = desktopSources);

  /// The XDG folders and the desktop's thumbnails.
  static PhotoSources desktopSources();

  void show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) override;

  /// What the open sheet holds; null when none is open.
  const PhotoSheet* content() const { return content_.get(); }

 private:
  void close();
  void confirmed(PhotoSelection selection);
  void forget();

  MainQueue& queue_;
  GtkApplicationPort& application_;
  const MediaReader reader_;
  const std::function<PhotoSources()> sources_;
  Once<void(PhotoSelection)> selected_;
  WorkerPool players_;
  std::unique_ptr<PhotoSheet> content_;
  std::unique_ptr<Sheet> sheet_;
  Subscription resigns_;
  Subscription leaves_;
  bool isClosing_ = false;
};

}  // namespace orivex::gtk
