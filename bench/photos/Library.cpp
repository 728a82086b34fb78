#include "Library.h"

#include <thread>
#include <vector>

#include <utime.h>

#include "device/photos/FakeMedia.h"
#include "photos/library/FolderScan.h"

namespace orivex::bench {
namespace {

constexpr int filesPerFolder = 500;
constexpr int workers = 2;

// What a photo's thumbnail costs to read: no area of one colour.
gtk::Thumbnail thumbnail(int seed) {
  auto picture = gtk::GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 256, 192));
  guchar* const pixels = gdk_pixbuf_get_pixels(picture.get());
  const int stride = gdk_pixbuf_get_rowstride(picture.get());
  for (int y = 0; y < 192; ++y) {
    for (int x = 0; x < 256; ++x) {
      guchar* const pixel = pixels + std::ptrdiff_t{y} * stride + std::ptrdiff_t{x} * 3;
      pixel[0] = static_cast<guchar>(x + seed);
      pixel[1] = static_cast<guchar>(y * 2 + x * x / 64);
      pixel[2] = static_cast<guchar>((x ^ y) & 31);
    }
  }
  return {picture, std::nullopt};
}

}  // namespace

Library::Library(int photos) {
  const auto contents = gtk::pictureData(64, 48, 0x4080c0ff, "jpeg");
  const gtk::ThumbnailCache cache(folder_.path() / "cache");
  const auto add = [&](int first) {
    for (int index = first; index < photos; index += workers) {
      const auto folder = std::filesystem::path("photos") / std::to_string(index / filesPerFolder);
      const auto path = folder_.write(folder / ("IMG_" + std::to_string(index) + ".jpg"), contents);
      constexpr std::time_t oldest = 1'600'000'000;
      constexpr int prime = 7919;  // neither folder by folder nor name by name
      const utimbuf times{oldest + index * prime % 1'000'003, oldest + index * prime % 1'000'003};
      utime(path.c_str(), &times);
      cache.write(*gtk::FolderScan::itemAt(path, {}), gtk::ThumbnailSize::large, thumbnail(index));
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(workers);
  for (int worker = 0; worker < workers; ++worker) threads.emplace_back(add, worker);
  for (auto& thread : threads) thread.join();
}

gtk::PhotoSources Library::sources() const {
  return {{{folder_.path() / "photos", "Photos"}}, gtk::ThumbnailCache(folder_.path() / "cache")};
}

}  // namespace orivex::bench
