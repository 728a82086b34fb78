#include "MediaIndex.h"

#include <utility>

namespace orivex::gtk {

void MediaIndex::add(MediaItem item) {
  auto& known = items_[item.path];
  // An unchanged file keeps its item, by which the grid sees that nothing is to be drawn anew.
  if (!known || *known != item) known = std::make_shared<MediaItem>(std::move(item));
}

bool MediaIndex::remove(const std::string& path) {
  const auto before = items_.size();
  items_.erase(path);
  std::erase_if(items_, [below = path + "/"](const auto& item) { return item.first.starts_with(below); });
  return items_.size() != before;
}

std::shared_ptr<const MediaCatalog> MediaIndex::catalog(const std::vector<MediaRoot>& roots, bool isComplete) const {
  MediaItems items;
  items.reserve(items_.size());
  for (const auto& [path, item] : items_) items.push_back(item);
  return std::make_shared<MediaCatalog>(std::move(items), roots, isComplete);
}

}  // namespace orivex::gtk
