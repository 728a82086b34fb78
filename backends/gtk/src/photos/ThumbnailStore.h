#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <unordered_map>
#include <utility>

#include <gdk/gdk.h>

#include "../glib/GRef.h"
#include "MediaItem.h"

namespace orivex::gtk {

/// What is known of how an item looks.
struct LoadedThumbnail {
  GRef<GdkTexture> texture;  ///< null when the item is broken
  std::optional<double> duration = std::nullopt;
  bool isBroken() const { return !texture; }
};

/// The thumbnails in memory; those that were not used for longest go first. Main thread.
class ThumbnailStore {
 public:
  explicit ThumbnailStore(std::size_t mostBytes) : mostBytes_(mostBytes) {}

  /// Null when it is not in memory. Finding is using.
  const LoadedThumbnail* find(const MediaItemPtr& item);

  void put(const MediaItemPtr& item, LoadedThumbnail thumbnail);

  /// Lets go of some that were not used for longest; false when there are none.
  bool shrink();

  /// Bytes of the pixels that are kept.
  std::size_t bytes() const { return bytes_; }

 private:
  using Entry = std::pair<MediaItemPtr, LoadedThumbnail>;

  void erase(std::list<Entry>::iterator entry);

  const std::size_t mostBytes_;
  std::size_t bytes_ = 0;
  std::list<Entry> entries_;  // the last used first
  std::unordered_map<MediaItemPtr, std::list<Entry>::iterator> places_;
};

}  // namespace orivex::gtk
