#include "ThumbnailLoader.h"

#include <algorithm>

namespace orivex::gtk {
namespace {

constexpr std::size_t mostRunning = 2;

// Some twenty screens of thumbnails of a phone.
constexpr std::size_t mostBytes = 48 << 20;

std::size_t bytesOf(const LoadedThumbnail& thumbnail) {
  constexpr std::size_t bytesPerPixel = 4;
  if (!thumbnail.texture) return 0;
  return bytesPerPixel * static_cast<std::size_t>(gdk_texture_get_width(thumbnail.texture.get())) *
         static_cast<std::size_t>(gdk_texture_get_height(thumbnail.texture.get()));
}

LoadedThumbnail textureOf(const Thumbnail& thumbnail) {
  return {GRef<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(thumbnail.picture.get())), thumbnail.duration};
}

// The work for one thumbnail on a worker thread.
void load(const MediaItem& item, ThumbnailSize size, const ThumbnailCache& cache, const MediaReader& reader,
          const ThumbnailLoader::Ready& deliver) {
  auto kept = cache.read(item, size);
  if (!kept && size != ThumbnailSize::xLarge) kept = cache.read(item, ThumbnailSize::xLarge);
  if (kept) deliver(textureOf(*kept));
  // Another program may have made it, perhaps of a video that is none to the decoder.
  if (kept && (item.type == MediaType::image || kept->duration)) return;
  if (cache.hasFailed(item)) return deliver({});
  if (const auto made = reader(item, static_cast<int>(size), static_cast<int>(size))) {
    deliver(textureOf(*made));
    cache.write(item, size, *made);
  } else {
    deliver({});
    cache.writeFailure(item);
  }
}

}  // namespace

// To free hundreds of pictures takes a moment, and so does the sheet around that goes in this one.
ThumbnailLoader::~ThumbnailLoader() {
  queue_.async([kept = std::move(kept_)] {});
}

const LoadedThumbnail* ThumbnailLoader::find(const MediaItemPtr& item) {
  const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const auto& known) { return known.first == item; });
  if (found == kept_.end()) return nullptr;
  kept_.splice(kept_.begin(), kept_, found);
  return &kept_.front().second;
}

Subscription ThumbnailLoader::request(const MediaItemPtr& item, Ready ready) {
  const auto request = std::make_shared<const Request>(Request{item, std::move(ready)});
  requests_.push_back(request);
  startNext();
  return Subscription(alive_.guard([this, request] { requests_.remove(request); }));
}

void ThumbnailLoader::startNext() {
  const auto isVideo = [](const MediaItemPtr& item) { return item->type == MediaType::video; };
  const auto isRunning = [this](const MediaItemPtr& item) {
    return std::find(running_.begin(), running_.end(), item) != running_.end();
  };
  for (const auto& request : requests_) {
    if (running_.size() == mostRunning) return;
    const bool waits = isVideo(request->item) && std::any_of(running_.begin(), running_.end(), isVideo);
    if (!waits && !isRunning(request->item)) start(request->item);
  }
}

void ThumbnailLoader::start(const MediaItemPtr& item) {
  running_.push_back(item);
  auto loaded = alive_.guard([this, item](const LoadedThumbnail& thumbnail) { this->loaded(item, thumbnail); });
  auto finished = alive_.guard([this, item] { this->finished(item); });
  queue_.global([&queue = queue_, &reader = reader_, cache = cache_, size = size_, item, loaded = std::move(loaded),
                 finished = std::move(finished)]() mutable {
    load(*item, size, cache, reader,
         [&](const LoadedThumbnail& thumbnail) { queue.async([loaded, thumbnail]() mutable { loaded(thumbnail); }); });
    queue.async(std::move(finished));
  });
}

void ThumbnailLoader::loaded(const MediaItemPtr& item, const LoadedThumbnail& thumbnail) {
  kept_.remove_if([&](const auto& known) { return known.first == item; });
  kept_.emplace_front(item, thumbnail);
  std::size_t bytes = 0;
  const auto isTooMuch = [&](const auto& known) { return (bytes += bytesOf(known.second)) > mostBytes; };
  kept_.erase(std::find_if(std::next(kept_.begin()), kept_.end(), isTooMuch), kept_.end());
  // A copy, since one that is told may withdraw itself or another.
  for (const auto& request : std::list(requests_)) {
    const bool waits = std::find(requests_.begin(), requests_.end(), request) != requests_.end();
    if (waits && request->item == item) request->ready(thumbnail);
  }
}

void ThumbnailLoader::finished(const MediaItemPtr& item) {
  std::erase(running_, item);
  requests_.remove_if([&](const auto& request) { return request->item == item; });
  startNext();
}

}  // namespace orivex::gtk
