#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace orivex::gtk {

/// How a stored picture is turned to be seen upright: the axes are swapped first, then each may run backwards, in terms
/// of the stored picture.
struct Turn {
  bool swapsAxes = false;
  bool mirrorsX = false;
  bool mirrorsY = false;

  bool isNone() const { return !swapsAxes && !mirrorsX && !mirrorsY; }

  /// Of the tag "Orientation" of Exif and TIFF; any value but 2 to 8 is no turn.
  static Turn ofOrientation(int orientation);

  /// Of the payload of a JPEG's APP1 marker; no turn when it holds no Exif data or these are damaged.
  static Turn ofExif(std::span<const std::uint8_t> payload);

  /// Width and height change places where the axes do.
  template <class Number>
  std::pair<Number, Number> upright(Number width, Number height) const {
    return swapsAxes ? std::pair(height, width) : std::pair(width, height);
  }
};

/// Where the samples of the upright picture lie in the stored one.
struct UprightSamples {
  const std::uint8_t* origin;  ///< top left as seen
  std::ptrdiff_t right;        ///< bytes to the next one
  std::ptrdiff_t down;

  /// `width` and `height` of the stored picture, whose pixels are `pixelBytes` and whose rows are `rowBytes` apart.
  static UprightSamples of(const std::uint8_t* stored, std::size_t width, std::size_t height, std::size_t pixelBytes,
                           std::size_t rowBytes, const Turn& turn);

  const std::uint8_t* at(std::size_t x, std::size_t y) const {
    return origin + static_cast<std::ptrdiff_t>(x) * right + static_cast<std::ptrdiff_t>(y) * down;
  }
};

}  // namespace orivex::gtk
