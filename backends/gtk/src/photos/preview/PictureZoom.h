#pragma once

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

/// How a picture lies in an area when it is looked at closer than as a whole: so many times as large, and moved. Its
/// edges never come further in than they have to. Points.
class PictureZoom {
 public:
  static constexpr double largest = 4;

  bool isIn() const { return scale_ > 1; }
  double scale() const { return scale_; }
  /// By which the picture's middle lies beside the area's.
  Translation offset() const { return offset_; }

  /// The size of the area, and of the picture when it shows as a whole. Shows it so.
  void fit(Size picture, Size area);

  /// Keeps what lies at `focus`, counted from the area's middle, where it is.
  void scaleTo(double scale, Point focus);
  void moveTo(Translation offset);

 private:
  Size picture_;
  Size area_;
  double scale_ = 1;
  Translation offset_;
};

}  // namespace orivex::gtk
