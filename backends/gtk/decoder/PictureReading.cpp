#include "PictureReading.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "ColorProfile.h"
#include "JpegRecoder.h"
#include "TurboJpeg.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr std::size_t rgbBytes = 3;

bool beginsAsJpeg(std::FILE* file) {
  constexpr std::array<unsigned char, 3> startOfImage{0xFF, 0xD8, 0xFF};
  std::array<unsigned char, startOfImage.size()> first{};
  const auto count = std::fread(first.data(), 1, first.size(), file);
  std::rewind(file);
  return count == first.size() && first == startOfImage;
}

std::uint8_t onWhite(unsigned sample, unsigned alpha) {
  constexpr unsigned full = 255;
  return static_cast<std::uint8_t>((sample * alpha + full * (full - alpha) + full / 2) / full);
}

// In place: a copy of a large picture would not fit beside it.
void blendOnWhite(GdkPixbuf* picture) {
  auto* row = gdk_pixbuf_get_pixels(picture);
  for (int y = 0; y < gdk_pixbuf_get_height(picture); ++y, row += gdk_pixbuf_get_rowstride(picture)) {
    auto* pixel = row;
    for (int x = 0; x < gdk_pixbuf_get_width(picture); ++x, pixel += rgbBytes + 1) {
      for (std::size_t sample = 0; sample < rgbBytes; ++sample) pixel[sample] = onWhite(pixel[sample], pixel[rgbBytes]);
    }
  }
}

std::string profileOf(GdkPixbuf* picture) {
  const char* const text = gdk_pixbuf_get_option(picture, "icc-profile");
  if (!text) return {};
  gsize length = 0;
  const GCharPtr bytes(reinterpret_cast<char*>(g_base64_decode(text, &length)));
  return plainProfile({bytes.get(), length}, cmsSigRgbData);
}

std::variant<JpegImage, Failure> encodePixbuf(GdkPixbuf* stored, double quality) {
  const auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_apply_embedded_orientation(stored));
  if (!picture) return Failure{"too large to be turned"};
  const bool hasAlpha = gdk_pixbuf_get_has_alpha(picture.get());
  if (hasAlpha) blendOnWhite(picture.get());
  const Pixels pixels{gdk_pixbuf_get_pixels(picture.get()), gdk_pixbuf_get_width(picture.get()),
                      gdk_pixbuf_get_height(picture.get()), gdk_pixbuf_get_rowstride(picture.get()),
                      hasAlpha ? TJPF_RGBX : TJPF_RGB};
  return encodePixels(pixels, quality, profileOf(stored));
}

}  // namespace

std::variant<JpegImage, Failure> recodePicture(std::FILE* file, double quality) {
  if (beginsAsJpeg(file)) {
    if (auto recoded = recodeJpeg(file, quality)) return std::move(*recoded);
    std::rewind(file);
  }
  auto decoded = loadPixbuf(file);
  if (auto* const failure = std::get_if<Failure>(&decoded)) return std::move(*failure);
  return encodePixbuf(std::get<GRef<GdkPixbuf>>(decoded).get(), quality);
}

std::variant<GRef<GdkPixbuf>, Failure> readPicture(std::FILE* file, PixelSize most) {
  auto decoded = loadPixbuf(file, most);
  if (auto* const picture = std::get_if<GRef<GdkPixbuf>>(&decoded)) {
    return GRef<GdkPixbuf>::adopt(gdk_pixbuf_apply_embedded_orientation(picture->get()));
  }
  return decoded;
}

}  // namespace orivex::gtk
