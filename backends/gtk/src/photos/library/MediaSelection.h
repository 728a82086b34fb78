#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MediaItem.h"

namespace orivex::gtk {

/// What the visitor has selected, in the order of selection, under the options' rules.
class MediaSelection {
 public:
  explicit MediaSelection(const PhotoLibraryOptions& options) : options_(options) {}

  const std::vector<MediaItemPtr>& items() const { return items_; }

  /// Place of a file in the selection, from 1; 0 when it is not selected.
  std::size_t numberOf(const MediaItem& item) const;

  /// Whether what is selected already keeps the kind of `item` out.
  bool isKindExcluded(const MediaItem& item) const;

  /// Why `item` cannot be added, as a word for the visitor; nothing when it can, or when it is selected.
  std::optional<std::string> refusal(const MediaItem& item) const;

  /// Adds or takes away; those after one that is taken away move up. Nothing happens when it is refused.
  void toggle(const MediaItemPtr& item);

  /// Brings the selection up to date with the library: `current` gives the file as it is now, null when it is gone.
  /// Returns whether anything has changed.
  bool refresh(const std::function<MediaItemPtr(const std::string& path)>& current);

  /// Bytes of all selected files.
  std::int64_t bytes() const;

  /// What the host gets. Not to be called with nothing selected.
  PhotoSelection result(bool isOriginal) const;

 private:
  std::size_t maximum() const;

  const PhotoLibraryOptions options_;
  std::vector<MediaItemPtr> items_;
};

}  // namespace orivex::gtk
