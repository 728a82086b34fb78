#include "video/FrameFeed.h"

#include <utility>

#include <gst/video/video.h>

#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

using GBytesPtr = std::unique_ptr<GBytes, FreeWith<g_bytes_unref>>;

/// Keeps a frame's memory mapped for as long as a texture reads it.
class MappedFrame {
 public:
  explicit MappedFrame(SharedSample sample) : sample_(std::move(sample)) {
    GstVideoInfo info;
    auto* const caps = gst_sample_get_caps(sample_.get());
    auto* const buffer = gst_sample_get_buffer(sample_.get());
    mapped_ = caps && buffer && gst_video_info_from_caps(&info, caps) &&
              gst_video_frame_map(&frame_, &info, buffer, GST_MAP_READ);
  }
  MappedFrame(const MappedFrame&) = delete;
  MappedFrame& operator=(const MappedFrame&) = delete;
  ~MappedFrame() {
    if (mapped_) gst_video_frame_unmap(&frame_);
  }

  explicit operator bool() const { return mapped_; }
  int width() const { return GST_VIDEO_FRAME_WIDTH(&frame_); }
  int height() const { return GST_VIDEO_FRAME_HEIGHT(&frame_); }
  gsize stride() const { return static_cast<gsize>(GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, 0)); }
  gconstpointer pixels() const { return GST_VIDEO_FRAME_PLANE_DATA(&frame_, 0); }

 private:
  const SharedSample sample_;
  GstVideoFrame frame_{};
  bool mapped_ = false;
};

GRef<GdkTexture> textureOf(SharedSample sample) {
  auto frame = std::make_unique<MappedFrame>(std::move(sample));
  if (!*frame) return nullptr;
  const int width = frame->width();
  const int height = frame->height();
  const gsize stride = frame->stride();
  const auto* const pixels = frame->pixels();
  const GBytesPtr bytes(g_bytes_new_with_free_func(
      pixels, stride * static_cast<gsize>(height), [](gpointer data) { delete static_cast<MappedFrame*>(data); },
      frame.release()));
  // A frame has no transparent pixels, so that its colours are multiplied already: what every renderer takes as it is.
  return GRef<GdkTexture>::adopt(
      gdk_memory_texture_new(width, height, GDK_MEMORY_B8G8R8A8_PREMULTIPLIED, bytes.get(), stride));
}

}  // namespace

void FrameFeed::push(SharedSample frame) {
  const std::lock_guard lock(mutex_);
  newest_ = std::move(frame);
  if (std::exchange(posted_, true)) return;
  main_.async([self = shared_from_this()] { self->deliver(); });
}

void FrameFeed::deliver() {
  SharedSample frame;
  {
    const std::lock_guard lock(mutex_);
    posted_ = false;
    frame = std::move(newest_);
  }
  if (!show_ || !frame) return;
  if (auto texture = textureOf(std::move(frame))) show_(std::move(texture));
}

void FrameFeed::close() {
  show_ = nullptr;
}

}  // namespace orivex::gtk
