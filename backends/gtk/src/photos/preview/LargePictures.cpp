#include "LargePictures.h"

#include <algorithm>

namespace orivex::gtk {

void LargePictures::request(std::vector<Request> requests, Size area) {
  requests_ = std::move(requests);
  area_ = area;
  std::erase_if(pictures_, [this](const auto& picture) {
    return std::none_of(requests_.begin(), requests_.end(),
                        [&](const Request& request) { return request.item == picture.first; });
  });
  loadNext();
}

const LargePictures::Picture* LargePictures::find(const MediaItemPtr& item) const {
  const auto found = pictures_.find(item);
  return found == pictures_.end() ? nullptr : &found->second;
}

void LargePictures::loadNext() {
  if (isLoading_) return;
  const auto next = std::find_if(requests_.begin(), requests_.end(), [this](const Request& request) {
    const auto* const picture = find(request.item);
    return !picture || picture->detail < request.detail;
  });
  if (next != requests_.end()) load(*next);
}

void LargePictures::load(const Request& request) {
  isLoading_ = true;
  auto loaded = alive_.guard([this, request](const GRef<GdkTexture>& texture) {
    isLoading_ = false;
    const bool isRequested =
        std::any_of(requests_.begin(), requests_.end(), [&](const Request& now) { return now.item == request.item; });
    if (isRequested) {
      auto& picture = pictures_[request.item];
      if (texture) picture.texture = texture;
      picture.detail = request.detail;
      loaded_();
    }
    loadNext();
  });
  const int width = static_cast<int>(area_.width) * request.detail;
  const int height = static_cast<int>(area_.height) * request.detail;
  queue_.global(
      [&queue = queue_, &reader = reader_, item = request.item, width, height, loaded = std::move(loaded)]() mutable {
        const auto large = reader(*item, width, height);
        auto texture =
            large ? GRef<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(large->picture.get())) : GRef<GdkTexture>();
        queue.async([loaded = std::move(loaded), texture = std::move(texture)]() mutable { loaded(texture); });
      });
}

}  // namespace orivex::gtk
