#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>

#include "MediaReader.h"
#include "ThumbnailStore.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Brings thumbnails into memory: from the desktop's cache, or made anew and put there. Two at a time, in the order in
/// which they were asked for; of videos, which can take seconds, one at a time. Main thread.
class ThumbnailLoader {
 public:
  using Ready = std::function<void(const LoadedThumbnail&)>;

  ThumbnailLoader(MainQueue& queue, const MediaReader& reader, ThumbnailCache cache, ThumbnailSize size);

  /// What is in memory; null when nothing is.
  const LoadedThumbnail* find(const MediaItemPtr& item) { return store_.find(item); }

  /// Lets go of a part of what is in memory; false when there is nothing.
  bool shrink() { return store_.shrink(); }

  /// Calls `ready` once the thumbnail is there, and again when more becomes known: a sharper picture, the length of a
  /// video. Whoever lets go of the subscription withdraws; what nobody waits for is not begun.
  [[nodiscard]] Subscription request(const MediaItemPtr& item, Ready ready);

 private:
  struct Request {
    MediaItemPtr item;
    std::map<std::uint64_t, Ready> waiting;
    bool isRunning = false;
  };

  std::list<Request>::iterator find(const MediaItem* item);
  void withdraw(const MediaItem* item, std::uint64_t ticket);
  void startNext();
  void start(Request& request);
  void learn(const MediaItemPtr& item, const LoadedThumbnail& thumbnail);
  void finish(const MediaItem* item);

  MainQueue& queue_;
  const MediaReader& reader_;
  const ThumbnailCache cache_;
  const ThumbnailSize size_;
  ThumbnailStore store_;
  std::list<Request> requests_;
  std::uint64_t nextTicket_ = 0;
  int running_ = 0;
  int runningVideos_ = 0;
  Alive alive_;
};

}  // namespace orivex::gtk
