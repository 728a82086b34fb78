#pragma once

#include <cstdint>
#include <utility>

#include <gst/video/video.h>

#include "video/GstPointers.h"

namespace orivex::gtk {

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
