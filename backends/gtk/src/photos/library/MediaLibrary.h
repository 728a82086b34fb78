#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "FolderWatch.h"
#include "MediaCatalog.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The photos and videos below some folders, kept up to date while this lives. The files are looked at on worker
/// threads; this object is the main thread's end of it.
class MediaLibrary {
 public:
  using Changed = std::function<void(std::shared_ptr<const MediaCatalog>)>;

  /// Begins to scan. `changed` gets the library as it is known so far: a small one at once, of a larger one first what
  /// lies in the folders that were modified last.
  MediaLibrary(MainQueue& queue, std::vector<MediaRoot> roots, const MediaFilter& filter, Changed changed);
  MediaLibrary(const MediaLibrary&) = delete;
  MediaLibrary& operator=(const MediaLibrary&) = delete;
  ~MediaLibrary();

  /// The visitor's XDG folders for pictures and videos. One that the desktop does not name is taken to have its usual
  /// name; one that is turned off, by pointing it at the home folder, is left out.
  static std::vector<MediaRoot> desktopRoots();

 private:
  class Worker;
  struct Update;

  MainQueue& queue_;
  Changed changed_;
  FolderWatch watch_;
  std::shared_ptr<Worker> worker_;
  Alive alive_;
};

}  // namespace orivex::gtk
