#pragma once

#include <atomic>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"

#include "orivex/platform/ports/MediaProbe.h"

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

/// Finds seven seconds of green in every file but those named "broken".
class FakeProbe final : public MediaProbe {
 public:
  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override {
    ++probes;
    if (path.find("broken") != std::string::npos) return Failure{"no video"};
    return VideoFacts{7, {64, 36}, pictureData(64, 36, 0x20a040ff, "jpeg")};
  }

  mutable std::atomic<int> probes = 0;
};

}  // namespace orivex::gtk
