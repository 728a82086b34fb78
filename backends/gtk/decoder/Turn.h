#pragma once

#include <utility>

namespace orivex::gtk {

/// How a stored picture is turned to be seen upright: the axes are swapped first, then each may run backwards, in terms
/// of the stored picture.
struct Turn {
  bool swapsAxes = false;
  bool mirrorsX = false;
  bool mirrorsY = false;

  bool isNone() const { return !swapsAxes && !mirrorsX && !mirrorsY; }

  /// Of the tag "Orientation" of Exif; any value but 2 to 8 is no turn.
  static Turn ofOrientation(int orientation);

  /// Width and height change places where the axes do.
  template <class Number>
  std::pair<Number, Number> upright(Number width, Number height) const {
    return swapsAxes ? std::pair(height, width) : std::pair(width, height);
  }
};

}  // namespace orivex::gtk
