#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "MediaCatalog.h"

namespace orivex::gtk {

/// The known files while they change; one thread at a time.
class MediaIndex {
 public:
  /// Adds a file, or replaces what was known of it.
  void add(MediaItem item);

  /// Forgets a file, or all files below a folder. Returns whether there was any.
  bool remove(const std::string& path);

  std::shared_ptr<const MediaCatalog> catalog(const std::vector<MediaRoot>& roots, bool isComplete) const;

 private:
  std::unordered_map<std::string, MediaItemPtr> items_;  // by path
};

}  // namespace orivex::gtk
