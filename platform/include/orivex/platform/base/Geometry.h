#pragma once

namespace orivex {

/// All lengths are in points: the toolkit's logical pixels, independent of the display's scale.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  Point center() const { return {x + width / 2, y + height / 2}; }
  Size size() const { return {width, height}; }
  bool operator==(const Rect&) const = default;
};

struct EdgeInsets {
  double top = 0;
  double left = 0;
  double bottom = 0;
  double right = 0;
  bool operator==(const EdgeInsets&) const = default;
};

/// The only transform that the component uses: a shift of what a view shows, without a new layout.
struct Translation {
  double x = 0;
  double y = 0;
  bool operator==(const Translation&) const = default;
};

/// Components from 0 to 1, not premultiplied.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  static constexpr Color white() { return {1, 1, 1, 1}; }
  static constexpr Color black() { return {0, 0, 0, 1}; }
  bool operator==(const Color&) const = default;
};

}  // namespace orivex
