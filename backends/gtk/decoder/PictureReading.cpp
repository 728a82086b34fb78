#include "PictureReading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ColorProfile.h"
#include "JpegRecoder.h"
#include "PictureLimits.h"
#include "TurboJpeg.h"
#include "glib/GMemory.h"
#include "glib/SignalConnection.h"

namespace orivex::gtk {
namespace {

constexpr std::size_t rgbBytes = 3;
constexpr PixelSize anySize{std::numeric_limits<int>::max(), std::numeric_limits<int>::max()};

// The size in which a loader that has seen a picture's head is to decode it; nothing when it is too large.
std::optional<PixelSize> sizeToDecode(GdkPixbufLoader* loader, PixelSize stored, PixelSize most) {
  constexpr std::uint64_t bytesPerPixel = 4;
  const auto wanted = fitted(stored, most);
  // JPEG alone is scaled while it is decoded; of any other format the whole picture is in memory for a moment.
  const GCharPtr format(gdk_pixbuf_format_get_name(gdk_pixbuf_loader_get_format(loader)));
  const auto held = std::string_view(format.get()) == "jpeg" ? wanted : stored;
  const auto heldBytes =
      static_cast<std::uint64_t>(held.width) * static_cast<std::uint64_t>(held.height) * bytesPerPixel;
  const bool isRefused =
      isTooLarge(static_cast<std::uint64_t>(stored.width), static_cast<std::uint64_t>(stored.height), heldBytes);
  return isRefused ? std::nullopt : std::optional(wanted);
}

// Loaders of moving pictures do not tell when they have pixels.
bool isMoving(GdkPixbufLoader* loader) {
  auto* const animation = gdk_pixbuf_loader_get_animation(loader);
  return animation && !gdk_pixbuf_animation_is_static_image(animation);
}

// Decodes a picture of any kind for which a loader is installed: its first frame, as it is stored, fitted into `most`.
std::variant<GRef<GdkPixbuf>, Failure> loadPixbuf(std::FILE* file, PixelSize most) {
  const auto loader = GRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new());
  bool isRefused = false;
  // Before the loader takes the memory for the picture. A size of 0 tells it to read no further than the head.
  const auto prepared = SignalConnection::connect(loader.get(), "size-prepared", [&](int width, int height) {
    const auto size = sizeToDecode(loader.get(), {width, height}, most);
    isRefused = !size;
    gdk_pixbuf_loader_set_size(loader.get(), size ? size->width : 0, size ? size->height : 0);
  });
  // Of a file that was cut off before this, a loader gives a black picture.
  bool hasPixels = false;
  const auto updated = SignalConnection::connect(loader.get(), "area-updated", [&] { hasPixels = true; });

  std::array<guchar, 65536> part;
  GError* raised = nullptr;
  std::size_t count = 0;
  bool isWhole = true;
  while (isWhole && !isRefused && (count = std::fread(part.data(), 1, part.size(), file)) > 0) {
    isWhole = gdk_pixbuf_loader_write(loader.get(), part.data(), count, &raised);
  }
  isWhole = gdk_pixbuf_loader_close(loader.get(), isWhole ? &raised : nullptr) && isWhole;
  const GErrorPtr error(raised);
  if (isRefused) return Failure{"too large to be decoded"};
  auto picture = GRef<GdkPixbuf>::share(gdk_pixbuf_loader_get_pixbuf(loader.get()));
  if (isWhole && picture && (hasPixels || isMoving(loader.get()))) return picture;
  return Failure{error ? error->message : "not a picture"};
}

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

PixelSize fitted(PixelSize picture, PixelSize most) {
  const double scale = std::min(
      {1.0, most.width / static_cast<double>(picture.width), most.height / static_cast<double>(picture.height)});
  const auto scaled = [&](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
  return {scaled(picture.width), scaled(picture.height)};
}

std::variant<JpegImage, Failure> recodePicture(std::FILE* file, double quality) {
  if (beginsAsJpeg(file)) {
    if (auto recoded = recodeJpeg(file, quality)) return std::move(*recoded);
    std::rewind(file);
  }
  auto decoded = loadPixbuf(file, anySize);
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
