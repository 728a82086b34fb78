#pragma once

#include <functional>
#include <optional>

#include "../../decoding/Decoder.h"
#include "MediaItem.h"
#include "ThumbnailCache.h"

namespace orivex::gtk {

/// Gives the photo, or the video's first frame, upright, at no more than `width` by `height` pixels and never enlarged;
/// nothing when it cannot be decoded or would take too much memory. Not on the main thread; may take seconds.
using MediaReader = std::function<std::optional<Thumbnail>(const MediaItem& item, int width, int height)>;

/// One that has photos and videos read by `decoder`, which must outlive it.
MediaReader mediaReader(const Decoder& decoder);

}  // namespace orivex::gtk
