#include "PictureReading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "JpegRecoder.h"
#include "PictureLimits.h"
#include "PixbufDecoder.h"
#include "PixbufEncoder.h"
#include "glib/GMemory.h"
#include "glib/SignalConnection.h"

namespace orivex::gtk {
namespace {

// JPEG alone is scaled while it is decoded; of any other format the whole picture is in memory for a moment.
constexpr std::uint64_t bytesPerPixel = 4;

bool beginsAsJpeg(std::FILE* file) {
  constexpr std::array<unsigned char, 3> startOfImage{0xFF, 0xD8, 0xFF};
  std::array<unsigned char, startOfImage.size()> first{};
  const auto count = std::fread(first.data(), 1, first.size(), file);
  std::rewind(file);
  return count == first.size() && first == startOfImage;
}

/// One run of gdk-pixbuf's loader that scales.
class Scaling {
 public:
  explicit Scaling(PixelSize most) : most_(most) {}
  Scaling(const Scaling&) = delete;
  Scaling& operator=(const Scaling&) = delete;
  ~Scaling() {
    if (!isClosed_) gdk_pixbuf_loader_close(loader_.get(), nullptr);  // it warns when it goes without
  }

  std::variant<GRef<GdkPixbuf>, Failure> load(std::FILE* file) {
    std::array<guchar, 65536> part;
    std::size_t count = 0;
    GError* raised = nullptr;
    bool goesOn = true;
    while (goesOn && (count = std::fread(part.data(), 1, part.size(), file)) > 0) {
      goesOn = gdk_pixbuf_loader_write(loader_.get(), part.data(), count, &raised) && !isTooLarge_;
    }
    isClosed_ = true;
    const bool isWhole = gdk_pixbuf_loader_close(loader_.get(), goesOn ? &raised : nullptr);
    const GErrorPtr error(raised);
    if (isTooLarge_) return Failure{"too large to be decoded"};
    auto* const picture = gdk_pixbuf_loader_get_pixbuf(loader_.get());
    if (!goesOn || !isWhole || !picture) return Failure{error ? error->message : "not a picture"};
    return GRef<GdkPixbuf>::adopt(gdk_pixbuf_apply_embedded_orientation(picture));
  }

 private:
  void sizePrepared(GdkPixbufLoader* loader, int width, int height) {
    const GCharPtr format(gdk_pixbuf_format_get_name(gdk_pixbuf_loader_get_format(loader)));
    const auto pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    const bool isScaledEarly = std::string_view(format.get()) == "jpeg";
    isTooLarge_ = isTooLarge(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height),
                             isScaledEarly ? 0 : pixels * bytesPerPixel);
    // A size of 0 tells the loader to read no further than the head.
    const auto size = isTooLarge_ ? PixelSize{0, 0} : fitted({width, height}, most_);
    gdk_pixbuf_loader_set_size(loader, size.width, size.height);
  }

  const PixelSize most_;
  GRef<GdkPixbufLoader> loader_ = GRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new());
  bool isTooLarge_ = false;
  bool isClosed_ = false;
  SignalConnection sizePrepared_ =
      SignalConnection::connect<&Scaling::sizePrepared>(loader_.get(), "size-prepared", this);
};

}  // namespace

std::variant<JpegImage, Failure> recodePicture(std::FILE* file, double quality) {
  if (beginsAsJpeg(file)) {
    if (auto recoded = JpegRecoder(file, quality).recode()) return std::move(*recoded);
    std::rewind(file);
  }
  auto decoded = decodePixbuf(file);
  if (auto* const failure = std::get_if<Failure>(&decoded)) return std::move(*failure);
  return encodePixbuf(std::get<GRef<GdkPixbuf>>(decoded).get(), quality);
}

std::variant<GRef<GdkPixbuf>, Failure> readPicture(std::FILE* file, int width, int height) {
  return Scaling({width, height}).load(file);
}

PixelSize fitted(PixelSize picture, PixelSize most) {
  const double scale = std::min(
      {1.0, most.width / static_cast<double>(picture.width), most.height / static_cast<double>(picture.height)});
  const auto scaled = [&](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
  return {scaled(picture.width), scaled(picture.height)};
}

}  // namespace orivex::gtk
