#include "PixbufLoading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "PictureLimits.h"
#include "glib/GMemory.h"
#include "glib/SignalConnection.h"

namespace orivex::gtk {
namespace {

constexpr std::uint64_t bytesPerPixel = 4;

std::uint64_t pixelsOf(PixelSize size) {
  return static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height);
}

/// One run of gdk-pixbuf's loader.
class Loading {
 public:
  explicit Loading(PixelSize most) : most_(most) {}
  Loading(const Loading&) = delete;
  Loading& operator=(const Loading&) = delete;
  ~Loading() {
    if (!isClosed_) gdk_pixbuf_loader_close(loader_.get(), nullptr);  // it warns when it goes without
  }

  std::variant<GRef<GdkPixbuf>, Failure> load(std::FILE* file) {
    std::array<guchar, 65536> part;
    GError* raised = nullptr;
    std::size_t count = 0;
    bool isWhole = true;
    while (isWhole && !isTooLarge_ && (count = std::fread(part.data(), 1, part.size(), file)) > 0) {
      isWhole = gdk_pixbuf_loader_write(loader_.get(), part.data(), count, &raised);
    }
    isClosed_ = true;
    isWhole = gdk_pixbuf_loader_close(loader_.get(), isWhole ? &raised : nullptr) && isWhole;
    const GErrorPtr error(raised);
    if (isTooLarge_) return Failure{"too large to be decoded"};
    auto picture = GRef<GdkPixbuf>::share(gdk_pixbuf_loader_get_pixbuf(loader_.get()));
    if (!isWhole || !picture || !(hasPixels_ || isMoving())) return Failure{error ? error->message : "not a picture"};
    return picture;
  }

 private:
  // Comes before the loader takes the memory for the picture.
  void sizePrepared(GdkPixbufLoader* loader, int width, int height) {
    const PixelSize stored{width, height};
    const auto wanted = fitted(stored, most_);
    // JPEG alone is scaled while it is decoded; of any other format the whole picture is in memory for a moment.
    const GCharPtr format(gdk_pixbuf_format_get_name(gdk_pixbuf_loader_get_format(loader)));
    const auto held = pixelsOf(std::string_view(format.get()) == "jpeg" ? wanted : stored);
    isTooLarge_ =
        isTooLarge(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height), held * bytesPerPixel);
    // A size of 0 tells the loader to read no further than the head.
    const auto size = isTooLarge_ ? PixelSize{0, 0} : wanted;
    gdk_pixbuf_loader_set_size(loader, size.width, size.height);
  }

  // Loaders of moving pictures do not tell when they have pixels.
  bool isMoving() const {
    auto* const animation = gdk_pixbuf_loader_get_animation(loader_.get());
    return animation && !gdk_pixbuf_animation_is_static_image(animation);
  }

  // Of a file that was cut off before this, a loader gives a black picture.
  void areaUpdated(GdkPixbufLoader* /*loader*/, int /*x*/, int /*y*/, int /*width*/, int /*height*/) {
    hasPixels_ = true;
  }

  const PixelSize most_;
  GRef<GdkPixbufLoader> loader_ = GRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new());
  bool isTooLarge_ = false;
  bool hasPixels_ = false;
  bool isClosed_ = false;
  SignalConnection sizePrepared_ =
      SignalConnection::connect<&Loading::sizePrepared>(loader_.get(), "size-prepared", this);
  SignalConnection areaUpdated_ = SignalConnection::connect<&Loading::areaUpdated>(loader_.get(), "area-updated", this);
};

}  // namespace

PixelSize fitted(PixelSize picture, PixelSize most) {
  const double scale = std::min(
      {1.0, most.width / static_cast<double>(picture.width), most.height / static_cast<double>(picture.height)});
  const auto scaled = [&](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
  return {scaled(picture.width), scaled(picture.height)};
}

std::variant<GRef<GdkPixbuf>, Failure> loadPixbuf(std::FILE* file) {
  constexpr int any = std::numeric_limits<int>::max();
  return loadPixbuf(file, {any, any});
}

std::variant<GRef<GdkPixbuf>, Failure> loadPixbuf(std::FILE* file, PixelSize most) {
  return Loading(most).load(file);
}

}  // namespace orivex::gtk
