#pragma once

#include <memory>
#include <string>
#include <vector>

#include "MediaItem.h"

namespace orivex::gtk {

/// A folder below which photos are looked for.
struct MediaRoot {
  std::string path;
  std::string name;  ///< as the visitor knows it
};

/// Whether the folder is there and its files may be listed; errno says why not.
bool isReadable(const MediaRoot& root);

/// The items of one folder, or of all of them.
struct Album {
  std::string name;
  std::string folder;  ///< empty for the album of everything
  std::shared_ptr<const MediaItems> items;
};

/// The library at one moment. It never changes, so that threads can share it.
class MediaCatalog {
 public:
  /// `items` in any order.
  MediaCatalog(MediaItems items, const std::vector<MediaRoot>& roots, bool isComplete);

  /// The first holds everything, newest first; then each folder that directly holds something, the one with the newest
  /// item first. Folders of one name are told apart by the folder around them.
  const std::vector<Album>& albums() const { return albums_; }

  /// False while the first scan is still on its way.
  bool isComplete() const { return isComplete_; }

  /// The file as it was at that moment; null when it was not there.
  MediaItemPtr find(const std::string& path) const { return itemWithPath(*albums_.front().items, path); }

 private:
  std::vector<Album> albums_;
  bool isComplete_ = false;
};

}  // namespace orivex::gtk
