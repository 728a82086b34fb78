#pragma once

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <gdk/gdk.h>

#include "../../glib/GRef.h"
#include "MediaReader.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// What is known of how an item looks.
struct LoadedThumbnail {
  GRef<GdkTexture> texture;  ///< null when the item is broken
  std::optional<double> duration = std::nullopt;
  bool isBroken() const { return !texture; }
};

/// Brings thumbnails into memory: from the desktop's cache, or made anew and put there. Two at a time, in the order in
/// which they were asked for; of videos, which can take seconds, one at a time. Main thread.
class ThumbnailLoader {
 public:
  using Ready = std::function<void(const LoadedThumbnail&)>;

  ThumbnailLoader(MainQueue& queue, const MediaReader& reader, ThumbnailCache cache, ThumbnailSize size)
      : queue_(queue), reader_(reader), cache_(std::move(cache)), size_(size) {}
  ThumbnailLoader(const ThumbnailLoader&) = delete;
  ThumbnailLoader& operator=(const ThumbnailLoader&) = delete;
  ~ThumbnailLoader();

  /// What is in memory; null when nothing is. Those that were not looked for longest go first.
  const LoadedThumbnail* find(const MediaItemPtr& item);

  /// Calls `ready` once the thumbnail is there, and again when more becomes known: a sharper picture, the length of a
  /// video. Whoever lets go of the subscription withdraws; what nobody waits for is not begun.
  [[nodiscard]] Subscription request(const MediaItemPtr& item, Ready ready);

 private:
  struct Request {
    MediaItemPtr item;
    Ready ready;
  };

  void startNext();
  void start(const MediaItemPtr& item);
  void loaded(const MediaItemPtr& item, const LoadedThumbnail& thumbnail);
  void finished(const MediaItemPtr& item);

  MainQueue& queue_;
  const MediaReader& reader_;
  const ThumbnailCache cache_;
  const ThumbnailSize size_;
  std::list<std::pair<MediaItemPtr, LoadedThumbnail>> kept_;  // the last used first
  std::list<std::shared_ptr<const Request>> requests_;
  std::vector<MediaItemPtr> running_;
  Alive alive_;
};

}  // namespace orivex::gtk
