#include "ThumbnailLoader.h"

#include <algorithm>
#include <utility>

namespace orivex::gtk {
namespace {

constexpr int mostRunning = 2;

// Some twenty screens of thumbnails of a phone.
constexpr std::size_t mostBytes = 48 << 20;

using Deliver = std::function<void(LoadedThumbnail)>;

LoadedThumbnail loaded(const Thumbnail& thumbnail) {
  return {GRef<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(thumbnail.picture.get())), thumbnail.duration};
}

/// The work for one thumbnail on a worker thread.
struct Job {
  const MediaItem& item;
  const ThumbnailSize size;
  const ThumbnailCache& cache;
  const MediaReader& reader;
  const Deliver& deliver;

  void run() const {
    if (const auto kept = readSharp()) {
      deliver(loaded(*kept));
      if (item.type == MediaType::video && !kept->duration) addDuration(*kept);
    } else if (cache.hasFailed(item)) {
      deliver({});
    } else {
      // Something to look at in the meantime.
      if (const auto coarse = cache.read(item, ThumbnailSize::normal)) deliver(loaded(*coarse));
      make();
    }
  }

 private:
  std::optional<Thumbnail> readSharp() const {
    auto kept = cache.read(item, size);
    if (!kept && size != ThumbnailSize::xLarge) kept = cache.read(item, ThumbnailSize::xLarge);
    return kept;
  }

  // Another program made the thumbnail, perhaps of a video that is none to the decoder.
  void addDuration(Thumbnail kept) const {
    const auto video = reader.read(item, 1, 1);
    if (!video) return deliver({});
    kept.duration = video->duration;
    deliver(loaded(kept));
    cache.write(item, size, kept);
  }

  void make() const {
    if (const auto made = reader.read(item, static_cast<int>(size), static_cast<int>(size))) {
      deliver(loaded(*made));
      cache.write(item, size, *made);
    } else {
      deliver({});
      cache.writeFailure(item);
    }
  }
};

}  // namespace

ThumbnailLoader::ThumbnailLoader(MainQueue& queue, const MediaReader& reader, ThumbnailCache cache, ThumbnailSize size)
    : queue_(queue), reader_(reader), cache_(std::move(cache)), size_(size), store_(mostBytes) {}

Subscription ThumbnailLoader::request(const MediaItemPtr& item, Ready ready) {
  auto request = find(item.get());
  if (request == requests_.end()) request = requests_.insert(requests_.end(), Request{item, {}});
  const auto ticket = nextTicket_++;
  request->waiting.emplace(ticket, std::move(ready));
  startNext();
  return Subscription(alive_.guard([this, item, ticket] { withdraw(item.get(), ticket); }));
}

std::list<ThumbnailLoader::Request>::iterator ThumbnailLoader::find(const MediaItem* item) {
  return std::find_if(requests_.begin(), requests_.end(), [&](const auto& known) { return known.item.get() == item; });
}

void ThumbnailLoader::withdraw(const MediaItem* item, std::uint64_t ticket) {
  const auto request = find(item);
  if (request == requests_.end()) return;
  request->waiting.erase(ticket);
  if (request->waiting.empty() && !request->isRunning) requests_.erase(request);
}

void ThumbnailLoader::startNext() {
  for (auto& request : requests_) {
    if (running_ == mostRunning) return;
    const bool isVideo = request.item->type == MediaType::video;
    if (!request.isRunning && !(isVideo && runningVideos_ > 0)) start(request);
  }
}

void ThumbnailLoader::start(Request& request) {
  request.isRunning = true;
  ++running_;
  if (request.item->type == MediaType::video) ++runningVideos_;
  auto learn =
      alive_.guard([this, item = request.item](const LoadedThumbnail& thumbnail) { this->learn(item, thumbnail); });
  auto finish = alive_.guard([this, item = request.item] { this->finish(item.get()); });
  queue_.global([&queue = queue_, &reader = reader_, cache = cache_, size = size_, item = request.item,
                 learn = std::move(learn), finish = std::move(finish)]() mutable {
    const Deliver deliver = [&](LoadedThumbnail thumbnail) {
      queue.async([learn, thumbnail = std::move(thumbnail)]() mutable { learn(thumbnail); });
    };
    Job{*item, size, cache, reader, deliver}.run();
    queue.async(std::move(finish));
  });
}

void ThumbnailLoader::learn(const MediaItemPtr& item, const LoadedThumbnail& thumbnail) {
  store_.put(item, thumbnail);
  const auto request = find(item.get());
  if (request == requests_.end()) return;
  // Copies, since one that is told may withdraw itself or another.
  const auto asked = request->waiting;
  for (const auto& [ticket, ready] : asked) {
    if (request->waiting.contains(ticket)) ready(thumbnail);
  }
}

void ThumbnailLoader::finish(const MediaItem* item) {
  --running_;
  if (item->type == MediaType::video) --runningVideos_;
  requests_.erase(find(item));
  startNext();
}

}  // namespace orivex::gtk
