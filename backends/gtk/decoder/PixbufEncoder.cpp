#include "PixbufEncoder.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "ColorProfile.h"
#include "RowEncoder.h"
#include "Turn.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr std::size_t rgbBytes = 3;

Turn turnOf(GdkPixbuf* pixbuf) {
  const char* const orientation = gdk_pixbuf_get_option(pixbuf, "orientation");
  return Turn::ofOrientation(orientation ? std::atoi(orientation) : 1);
}

std::string profileOf(GdkPixbuf* pixbuf) {
  const char* const text = gdk_pixbuf_get_option(pixbuf, "icc-profile");
  if (!text) return {};
  gsize length = 0;
  const std::unique_ptr<guchar, FreeWith<g_free>> bytes(g_base64_decode(text, &length));
  return colorsOfProfile({bytes.get(), length}, "RGB ");
}

std::uint8_t onWhite(unsigned sample, unsigned alpha) {
  constexpr unsigned full = 255;
  return static_cast<std::uint8_t>((sample * alpha + full * (full - alpha) + full / 2) / full);
}

// Writes `count` opaque pixels to `out` from pixels with or without alpha, `step` bytes apart.
void copyPixels(const std::uint8_t* pixel, std::ptrdiff_t step, bool hasAlpha, std::size_t count, std::uint8_t* out) {
  for (; count > 0; --count, pixel += step) {
    const unsigned alpha = hasAlpha ? pixel[rgbBytes] : 255;
    for (std::size_t sample = 0; sample < rgbBytes; ++sample) *out++ = onWhite(pixel[sample], alpha);
  }
}

}  // namespace

std::variant<JpegImage, Failure> encodePixbuf(GdkPixbuf* pixbuf, double quality) {
  const auto turn = turnOf(pixbuf);
  const auto storedWidth = static_cast<std::size_t>(gdk_pixbuf_get_width(pixbuf));
  const auto storedHeight = static_cast<std::size_t>(gdk_pixbuf_get_height(pixbuf));
  const auto [width, height] = turn.upright(storedWidth, storedHeight);
  const bool hasAlpha = gdk_pixbuf_get_has_alpha(pixbuf);
  const auto samples = UprightSamples::of(gdk_pixbuf_read_pixels(pixbuf), storedWidth, storedHeight,
                                          static_cast<std::size_t>(gdk_pixbuf_get_n_channels(pixbuf)),
                                          static_cast<std::size_t>(gdk_pixbuf_get_rowstride(pixbuf)), turn);
  std::vector<std::uint8_t> rgb(width * rgbBytes);
  const auto row = [&, count = width](unsigned y) -> const std::uint8_t* {
    copyPixels(samples.at(0, y), samples.right, hasAlpha, count, rgb.data());
    return rgb.data();
  };
  return encodeRows(static_cast<unsigned>(width), static_cast<unsigned>(height), row, quality, profileOf(pixbuf));
}

}  // namespace orivex::gtk
