#include "MediaSelection.h"

#include <algorithm>
#include <numeric>

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {

// A host that asks for none still opens a sheet in which something can be chosen.
std::size_t MediaSelection::maximum() const {
  return static_cast<std::size_t>(std::max(1, options_.maxSelectCount));
}

std::size_t MediaSelection::numberOf(const MediaItem& item) const {
  const auto found =
      std::find_if(items_.begin(), items_.end(), [&](const auto& selected) { return selected->path == item.path; });
  return found == items_.end() ? 0 : static_cast<std::size_t>(found - items_.begin()) + 1;
}

bool MediaSelection::isKindExcluded(const MediaItem& item) const {
  return !options_.allowMixSelect && !items_.empty() && items_.front()->type != item.type;
}

std::optional<std::string> MediaSelection::refusal(const MediaItem& item) const {
  if (numberOf(item) != 0) return std::nullopt;
  if (isKindExcluded(item)) return tr("照片和视频不能同时选择");
  const bool isTooLarge = item.type == MediaType::video && options_.maxVideoSize && item.size > *options_.maxVideoSize;
  if (isTooLarge) return options_.videoTooLarge;
  if (items_.size() >= maximum()) return trNumber("最多只能选择%1项", maximum());
  return std::nullopt;
}

void MediaSelection::toggle(const MediaItemPtr& item) {
  if (const auto number = numberOf(*item)) {
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(number) - 1);
  } else if (!refusal(*item)) {
    items_.push_back(item);
  }
}

bool MediaSelection::refresh(const std::function<MediaItemPtr(const std::string& path)>& current) {
  std::vector<MediaItemPtr> kept;
  for (const auto& item : items_) {
    if (auto now = current(item->path)) kept.push_back(std::move(now));
  }
  const bool changed = kept != items_;
  items_ = std::move(kept);
  return changed;
}

std::int64_t MediaSelection::bytes() const {
  return std::accumulate(items_.begin(), items_.end(), std::int64_t{0},
                         [](std::int64_t sum, const auto& item) { return sum + item->size; });
}

PhotoSelection MediaSelection::result(bool isOriginal) const {
  PhotoSelection selection;
  selection.isOriginal = isOriginal;
  for (const auto& item : items_) selection.items.push_back({item->type, Url::fromFilePath(item->path)});
  return selection;
}

}  // namespace orivex::gtk
