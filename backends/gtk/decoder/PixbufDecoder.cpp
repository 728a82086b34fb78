#include "PixbufDecoder.h"

#include <array>
#include <string>

#include "PictureLimits.h"
#include "glib/GMemory.h"
#include "glib/SignalConnection.h"

namespace orivex::gtk {
namespace {

Failure failureOf(const GErrorPtr& error) {
  return Failure{error ? error->message : "not a picture"};
}

/// One run of gdk-pixbuf's loader.
class Loading {
 public:
  ~Loading() {
    if (!closed_) gdk_pixbuf_loader_close(loader_.get(), nullptr);  // it warns when it goes without
  }
  Loading() = default;
  Loading(const Loading&) = delete;
  Loading& operator=(const Loading&) = delete;

  std::variant<GRef<GdkPixbuf>, Failure> load(std::FILE* file) {
    std::array<guchar, 65536> chunk;
    GError* raw = nullptr;
    std::size_t count = 0;
    bool fits = true;
    while (fits && (count = std::fread(chunk.data(), 1, chunk.size(), file)) > 0) {
      fits = gdk_pixbuf_loader_write(loader_.get(), chunk.data(), count, &raw);
    }
    closed_ = true;
    const bool complete = gdk_pixbuf_loader_close(loader_.get(), fits ? &raw : nullptr);
    const GErrorPtr error(raw);
    if (tooLarge_) return Failure{"too large to be decoded"};
    if (!fits || !complete) return failureOf(error);
    auto pixbuf = GRef<GdkPixbuf>::share(gdk_pixbuf_loader_get_pixbuf(loader_.get()));
    if (!pixbuf || !(hasPixels_ || isMoving())) return failureOf(error);
    return pixbuf;
  }

 private:
  // Comes before the loader takes the memory for the picture; a size of nothing makes it give up.
  void sizePrepared(GdkPixbufLoader* loader, int width, int height) {
    constexpr std::uint64_t pixelBytes = 4;
    const auto pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    tooLarge_ = isTooLarge(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height), pixels * pixelBytes);
    if (tooLarge_) gdk_pixbuf_loader_set_size(loader, 0, 0);
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

  GRef<GdkPixbufLoader> loader_ = GRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new());
  bool tooLarge_ = false;
  bool hasPixels_ = false;
  bool closed_ = false;
  SignalConnection sizePrepared_ =
      SignalConnection::connect<&Loading::sizePrepared>(loader_.get(), "size-prepared", this);
  SignalConnection areaUpdated_ = SignalConnection::connect<&Loading::areaUpdated>(loader_.get(), "area-updated", this);
};

}  // namespace

std::variant<GRef<GdkPixbuf>, Failure> decodePixbuf(std::FILE* file) {
  return Loading().load(file);
}

}  // namespace orivex::gtk
