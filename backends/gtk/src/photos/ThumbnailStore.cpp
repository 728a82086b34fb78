#include "ThumbnailStore.h"

namespace orivex::gtk {
namespace {

std::size_t bytesOf(const LoadedThumbnail& thumbnail) {
  constexpr std::size_t bytesPerPixel = 4;
  if (!thumbnail.texture) return 0;
  return bytesPerPixel * static_cast<std::size_t>(gdk_texture_get_width(thumbnail.texture.get())) *
         static_cast<std::size_t>(gdk_texture_get_height(thumbnail.texture.get()));
}

}  // namespace

const LoadedThumbnail* ThumbnailStore::find(const MediaItemPtr& item) {
  const auto place = places_.find(item);
  if (place == places_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, place->second);
  return &entries_.front().second;
}

void ThumbnailStore::put(const MediaItemPtr& item, LoadedThumbnail thumbnail) {
  if (const auto place = places_.find(item); place != places_.end()) erase(place->second);
  bytes_ += bytesOf(thumbnail);
  entries_.emplace_front(item, std::move(thumbnail));
  places_[item] = entries_.begin();
  while (bytes_ > mostBytes_ && entries_.size() > 1) erase(std::prev(entries_.end()));
}

bool ThumbnailStore::shrink() {
  constexpr int atOnce = 32;
  if (entries_.empty()) return false;
  for (int i = 0; i < atOnce && !entries_.empty(); ++i) erase(std::prev(entries_.end()));
  return true;
}

void ThumbnailStore::erase(std::list<Entry>::iterator entry) {
  bytes_ -= bytesOf(entry->second);
  places_.erase(entry->first);
  entries_.erase(entry);
}

}  // namespace orivex::gtk
