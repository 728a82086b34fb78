#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include <gst/video/video.h>

namespace orivex::gtk {

/// Deleter for GStreamer's reference-counted values: caps, samples, buffers, messages.
struct UnrefMiniObject {
  template <class MiniObject>
  void operator()(MiniObject* object) const {
    gst_mini_object_unref(reinterpret_cast<GstMiniObject*>(object));
  }
};

using GstCapsPtr = std::unique_ptr<GstCaps, UnrefMiniObject>;
using GstMessagePtr = std::unique_ptr<GstMessage, UnrefMiniObject>;

/// One frame with its format. Several threads may read it at a time.
using SharedSample = std::shared_ptr<GstSample>;

/// Takes over a reference that the caller owns.
inline SharedSample adoptSample(GstSample* sample) {
  return {sample, UnrefMiniObject()};
}

/// The first plane of a frame, its memory mapped for reading for as long as this lives. False when it cannot be.
class MappedFrame {
 public:
  explicit MappedFrame(SharedSample sample) : sample_(std::move(sample)) {
    GstVideoInfo info;
    const auto* const caps = sample_ ? gst_sample_get_caps(sample_.get()) : nullptr;
    auto* const buffer = sample_ ? gst_sample_get_buffer(sample_.get()) : nullptr;
    isMapped_ = caps && buffer && gst_video_info_from_caps(&info, caps) &&
                gst_video_frame_map(&frame_, &info, buffer, GST_MAP_READ);
  }
  MappedFrame(const MappedFrame&) = delete;
  MappedFrame& operator=(const MappedFrame&) = delete;
  ~MappedFrame() {
    if (isMapped_) gst_video_frame_unmap(&frame_);
  }

  explicit operator bool() const { return isMapped_; }
  int width() const { return GST_VIDEO_FRAME_WIDTH(&frame_); }
  int height() const { return GST_VIDEO_FRAME_HEIGHT(&frame_); }
  /// Bytes from one row to the next.
  int stride() const { return GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, 0); }
  const std::uint8_t* pixels() const {
    return static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, 0));
  }

 private:
  const SharedSample sample_;
  GstVideoFrame frame_{};
  bool isMapped_ = false;
};

}  // namespace orivex::gtk
