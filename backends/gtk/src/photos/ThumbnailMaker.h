#pragma once

#include <optional>
#include <string>

#include "ThumbnailCache.h"

#include "orivex/platform/ports/MediaProbe.h"

namespace orivex::gtk {

/// The picture at `path`, upright, decoded at no more than `width` by `height` pixels and never enlarged; null when it
/// cannot be decoded or would take too much memory. Not on the main thread.
GRef<GdkPixbuf> decodePicture(const std::string& path, int width, int height);

/// The same of a picture in memory.
GRef<GdkPixbuf> decodePictureData(const std::string& data, int width, int height);

/// A new small picture of `item`; nothing when none can be made. Not on the main thread; may take seconds.
std::optional<Thumbnail> makeThumbnail(const MediaItem& item, ThumbnailSize size, const MediaProbe& probe);

}  // namespace orivex::gtk
