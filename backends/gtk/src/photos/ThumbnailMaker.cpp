#include "ThumbnailMaker.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <variant>

#include "../glib/GMemory.h"
#include "../pictures/PictureLimits.h"

namespace orivex::gtk {
namespace {

// JPEG alone is scaled while it is decoded; of any other format the whole picture is in memory for a moment.
constexpr std::uint64_t bytesPerPixel = 4;

// What the loader is told once it knows the picture's own size.
struct Bounds {
  int width;
  int height;
  bool isTooLarge = false;
};

void fitInto(GdkPixbufLoader* loader, int width, int height, gpointer data) noexcept {
  auto& bounds = *static_cast<Bounds*>(data);
  const GCharPtr format(gdk_pixbuf_format_get_name(gdk_pixbuf_loader_get_format(loader)));
  const auto pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
  const bool isScaledEarly = std::string_view(format.get()) == "jpeg";
  bounds.isTooLarge = isTooLarge(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height),
                                 isScaledEarly ? 0 : pixels * bytesPerPixel);
  const double scale =
      std::min({1.0, bounds.width / static_cast<double>(width), bounds.height / static_cast<double>(height)});
  const auto scaled = [&](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
  // A size of 0 tells the loader to read no further than the head.
  if (bounds.isTooLarge) return gdk_pixbuf_loader_set_size(loader, 0, 0);
  gdk_pixbuf_loader_set_size(loader, scaled(width), scaled(height));
}

class Decoder {
 public:
  Decoder(int width, int height)
      : bounds_{width, height}, loader_(GRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new())) {
    g_signal_connect(loader_.get(), "size-prepared", G_CALLBACK(fitInto), &bounds_);
  }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;
  ~Decoder() { gdk_pixbuf_loader_close(loader_.get(), nullptr); }

  /// False when there is no use in more.
  bool write(const void* data, std::size_t length) {
    return gdk_pixbuf_loader_write(loader_.get(), static_cast<const guchar*>(data), length, nullptr) &&
           !bounds_.isTooLarge;
  }

  GRef<GdkPixbuf> finish() {
    if (!gdk_pixbuf_loader_close(loader_.get(), nullptr) || bounds_.isTooLarge) return nullptr;
    GdkPixbuf* const picture = gdk_pixbuf_loader_get_pixbuf(loader_.get());
    return picture ? GRef<GdkPixbuf>::adopt(gdk_pixbuf_apply_embedded_orientation(picture)) : nullptr;
  }

 private:
  Bounds bounds_;
  GRef<GdkPixbufLoader> loader_;
};

}  // namespace

GRef<GdkPixbuf> decodePicture(const std::string& path, int width, int height) {
  std::ifstream file(path, std::ios::binary);
  std::array<char, 65536> part{};
  Decoder decoder(width, height);
  while (file.read(part.data(), part.size()), file.gcount() > 0) {
    if (!decoder.write(part.data(), static_cast<std::size_t>(file.gcount()))) return nullptr;
  }
  return decoder.finish();
}

GRef<GdkPixbuf> decodePictureData(const std::string& data, int width, int height) {
  Decoder decoder(width, height);
  return decoder.write(data.data(), data.size()) ? decoder.finish() : nullptr;
}

std::optional<Thumbnail> makeThumbnail(const MediaItem& item, ThumbnailSize size, const MediaProbe& probe) {
  const int side = static_cast<int>(size);
  if (item.type == MediaType::image) {
    auto picture = decodePicture(item.path, side, side);
    return picture ? std::optional(Thumbnail{std::move(picture), std::nullopt}) : std::nullopt;
  }
  const auto facts = probe.probeVideo(item.path);
  const auto* const video = std::get_if<VideoFacts>(&facts);
  if (!video) return std::nullopt;
  auto picture = decodePictureData(video->firstFrameJpeg, side, side);
  return picture ? std::optional(Thumbnail{std::move(picture), video->duration}) : std::nullopt;
}

}  // namespace orivex::gtk
