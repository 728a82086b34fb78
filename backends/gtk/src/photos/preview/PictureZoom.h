#pragma once

#include <algorithm>

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

/// How a picture lies in an area when it is looked at closer than as a whole: so many times as large, and moved. Its
/// edges never come further in than they have to. Points.
class PictureZoom {
 public:
  static constexpr double largest = 4;

  PictureZoom() = default;
  /// A picture that shows as a whole: its size then, and that of the area.
  PictureZoom(Size picture, Size area) : picture_(picture), area_(area) {}

  bool isIn() const { return scale_ > 1; }
  double scale() const { return scale_; }
  /// By which the picture's middle lies beside the area's.
  Translation offset() const { return offset_; }

  /// Keeps what lies at `focus`, counted from the area's middle, where it is.
  void scaleTo(double scale, Point focus) {
    const double before = scale_;
    scale_ = std::clamp(scale, 1.0, largest);
    const double change = scale_ / before;
    moveTo({focus.x - (focus.x - offset_.x) * change, focus.y - (focus.y - offset_.y) * change});
  }

  void moveTo(Translation offset) {
    const double across = std::max(0.0, (picture_.width * scale_ - area_.width) / 2);
    const double down = std::max(0.0, (picture_.height * scale_ - area_.height) / 2);
    offset_ = {std::clamp(offset.x, -across, across), std::clamp(offset.y, -down, down)};
  }

 private:
  Size picture_;
  Size area_;
  double scale_ = 1;
  Translation offset_;
};

}  // namespace orivex::gtk
