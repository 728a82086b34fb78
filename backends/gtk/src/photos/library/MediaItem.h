#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {

/// One photo or video as a scan found it.
struct MediaItem {
  std::string path;  ///< absolute, in the file system's bytes
  MediaType type = MediaType::image;
  std::int64_t modified = 0;  ///< nanoseconds since 1970
  std::int64_t size = 0;      ///< bytes
  bool operator==(const MediaItem&) const = default;
};

/// Shared between the worker that scans and the main thread that shows; a changed file becomes a new item.
using MediaItemPtr = std::shared_ptr<const MediaItem>;

inline std::string_view nameOf(const MediaItem& item) {
  return std::string_view(item.path).substr(item.path.rfind('/') + 1);
}

inline std::string_view folderOf(const MediaItem& item) {
  return std::string_view(item.path).substr(0, item.path.rfind('/'));
}

/// The order of the grid: newest first; files of one moment by path, so that the order never wavers.
inline bool isShownBefore(const MediaItem& one, const MediaItem& other) {
  return one.modified != other.modified ? one.modified > other.modified : one.path < other.path;
}

}  // namespace orivex::gtk
