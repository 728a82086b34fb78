#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {

/// Which kinds of files are listed.
struct MediaFilter {
  bool images = true;
  bool videos = true;
};

/// What a file is by the ending of its name, in any case of letters; nothing for a hidden file, for one that is neither
/// photo nor video, and for a kind that `filter` leaves out. The contents are not looked at: that would read every file
/// of the library.
std::optional<MediaType> mediaTypeOf(std::string_view fileName, const MediaFilter& filter = {});

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
using MediaItems = std::vector<MediaItemPtr>;

/// The item of the file at `path`; null when `items` do not hold it.
inline MediaItemPtr itemWithPath(const MediaItems& items, std::string_view path) {
  const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) { return item->path == path; });
  return found == items.end() ? nullptr : *found;
}

inline std::string_view nameOf(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

inline std::string_view folderOf(std::string_view path) {
  return path.substr(0, path.rfind('/'));
}

}  // namespace orivex::gtk
