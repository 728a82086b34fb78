#pragma once

#include <optional>

#include "MediaItem.h"
#include "ThumbnailCache.h"

namespace orivex::gtk {

/// Looks into photos and videos.
class MediaReader {
 public:
  MediaReader() = default;
  MediaReader(const MediaReader&) = delete;
  MediaReader& operator=(const MediaReader&) = delete;
  virtual ~MediaReader() = default;

  /// The photo, or the video's first frame, upright, at no more than `width` by `height` pixels and never enlarged;
  /// nothing when it cannot be decoded or would take too much memory. Not on the main thread; may take seconds.
  virtual std::optional<Thumbnail> read(const MediaItem& item, int width, int height) const = 0;
};

}  // namespace orivex::gtk
