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
  const std::string below = path + "/";
  const auto first = items_.lower_bound(below);
  auto last = first;
  while (last != items_.end() && last->first.starts_with(below)) ++last;
  items_.erase(first, last);
  return items_.size() != before;
}

std::shared_ptr<const MediaCatalog> MediaIndex::catalog(const std::vector<MediaRoot>& roots, bool isComplete) const {
  MediaItems items;
  items.reserve(items_.size());
  for (const auto& [path, item] : items_) items.push_back(item);
  return std::make_shared<MediaCatalog>(std::move(items), roots, isComplete);
}

}  // namespace orivex::gtk
