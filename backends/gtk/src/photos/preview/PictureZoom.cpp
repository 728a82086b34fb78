#include "PictureZoom.h"

#include <algorithm>

namespace orivex::gtk {

void PictureZoom::fit(Size picture, Size area) {
  picture_ = picture;
  area_ = area;
  scale_ = 1;
  offset_ = {};
}

void PictureZoom::scaleTo(double scale, Point focus) {
  const double before = scale_;
  scale_ = std::clamp(scale, 1.0, largest);
  const double change = scale_ / before;
  moveTo({focus.x - (focus.x - offset_.x) * change, focus.y - (focus.y - offset_.y) * change});
}

void PictureZoom::moveTo(Translation offset) {
  const double across = std::max(0.0, (picture_.width * scale_ - area_.width) / 2);
  const double down = std::max(0.0, (picture_.height * scale_ - area_.height) / 2);
  offset_ = {std::clamp(offset.x, -across, across), std::clamp(offset.y, -down, down)};
}

}  // namespace orivex::gtk
