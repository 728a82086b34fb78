#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "../../glib/GRef.h"
#include "MediaItem.h"

namespace orivex::gtk {

/// A small picture of a file.
struct Thumbnail {
  GRef<GdkPixbuf> picture;
  std::optional<double> duration;  ///< seconds, of a video that the decoder has read
};

/// Longest sides in pixels of thumbnails that the desktop shares and that are sharp enough for the grid.
enum class ThumbnailSize : int { large = 256, xLarge = 512 };

/// The thumbnails that all programs of a desktop share, as the freedesktop thumbnail specification lays them down. Any
/// thread; blocks. A thumbnail counts while the modification time noted in it, in seconds, is the file's.
class ThumbnailCache {
 public:
  /// `folder`: what stands for "$XDG_CACHE_HOME/thumbnails".
  explicit ThumbnailCache(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// Of the visitor.
  static ThumbnailCache ofDesktop();

  /// A fresh thumbnail of `size`; nothing when there is none or it cannot be read.
  std::optional<Thumbnail> read(const MediaItem& item, ThumbnailSize size) const;

  /// Whether this program has failed on the file as it is.
  bool hasFailed(const MediaItem& item) const;

  /// Keeps a thumbnail, or that there can be none. Nothing happens when the file is no longer as `item` describes it,
  /// when it is so young that a later change need not show in its modification time, and when writing fails.
  void write(const MediaItem& item, ThumbnailSize size, const Thumbnail& thumbnail) const;
  void writeFailure(const MediaItem& item) const;

  /// Where the thumbnail of `item` belongs.
  std::filesystem::path pathOf(const MediaItem& item, ThumbnailSize size) const;
  std::filesystem::path failurePathOf(const MediaItem& item) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace orivex::gtk
