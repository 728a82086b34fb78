#include "LargePictures.h"

#include <algorithm>

namespace orivex::gtk {

void LargePictures::want(std::vector<Wish> wishes, Size area) {
  wishes_ = std::move(wishes);
  area_ = area;
  std::erase_if(pictures_, [this](const auto& picture) {
    return std::none_of(wishes_.begin(), wishes_.end(), [&](const Wish& wish) { return wish.item == picture.first; });
  });
  loadNext();
}

const LargePictures::Picture* LargePictures::find(const MediaItemPtr& item) const {
  const auto found = pictures_.find(item);
  return found == pictures_.end() ? nullptr : &found->second;
}

void LargePictures::loadNext() {
  if (isLoading_) return;
  const auto next = std::find_if(wishes_.begin(), wishes_.end(), [this](const Wish& wish) {
    const auto* const picture = find(wish.item);
    return !picture || picture->detail < wish.detail;
  });
  if (next != wishes_.end()) load(*next);
}

void LargePictures::load(const Wish& wish) {
  isLoading_ = true;
  auto loaded = alive_.guard([this, wish](const GRef<GdkTexture>& texture) {
    isLoading_ = false;
    const bool isWanted =
        std::any_of(wishes_.begin(), wishes_.end(), [&](const Wish& now) { return now.item == wish.item; });
    if (isWanted) {
      auto& picture = pictures_[wish.item];
      if (texture) picture.texture = texture;
      picture.isBroken = !picture.texture;
      picture.detail = wish.detail;
      loaded_();
    }
    loadNext();
  });
  const int width = static_cast<int>(area_.width) * wish.detail;
  const int height = static_cast<int>(area_.height) * wish.detail;
  queue_.global(
      [&queue = queue_, &reader = reader_, item = wish.item, width, height, loaded = std::move(loaded)]() mutable {
        const auto large = reader.read(*item, width, height);
        auto texture =
            large ? GRef<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(large->picture.get())) : GRef<GdkTexture>();
        queue.async([loaded = std::move(loaded), texture = std::move(texture)]() mutable { loaded(texture); });
      });
}

}  // namespace orivex::gtk
