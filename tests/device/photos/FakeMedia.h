#pragma once

#include <atomic>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GMemory.h"
#include "photos/library/MediaReader.h"
#include "support/TestDecoder.h"

namespace orivex::gtk {

/// A picture of one colour, encoded; `format` is "jpeg" or "png".
inline std::string pictureData(int width, int height, guint32 rgba, const char* format) {
  const auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
  gdk_pixbuf_fill(picture.get(), rgba);
  char* data = nullptr;
  gsize length = 0;
  gdk_pixbuf_save_to_buffer(picture.get(), &data, &length, format, nullptr, nullptr);
  const GCharPtr owned(data);
  return {data, length};
}

/// Photos as they are; seven seconds of green in every video but those named "broken".
class FakeMedia {
 public:
  std::optional<Thumbnail> operator()(const MediaItem& item, int width, int height) const {
    if (item.type == MediaType::image) {
      ++reading_;
      auto photo = photos_(item, width, height);
      --reading_;
      return photo;
    }
    if (item.path.find("broken") != std::string::npos) return std::nullopt;
    auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 64, 36));
    gdk_pixbuf_fill(picture.get(), 0x20a040ff);
    return Thumbnail{std::move(picture), 7};
  }

  /// Whether no worker reads a photo.
  bool isIdle() const { return reading_ == 0; }

 private:
  mutable std::atomic<int> reading_ = 0;
  TestDecoder decoder_;
  const MediaReader photos_ = mediaReader(decoder_);
};

}  // namespace orivex::gtk
