#include "video/FirstFrame.h"

#include <memory>
#include <variant>

#include <gst/app/app.h>
#include <gst/video/video.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"
#include "pictures/RowEncoder.h"
#include "video/FrameMemory.h"

namespace orivex::gtk {
namespace {

using CapsPtr = std::unique_ptr<GstCaps, FreeWith<gst_caps_unref>>;
using SamplePtr = std::unique_ptr<GstSample, FreeWith<gst_sample_unref>>;
using MessagePtr = std::unique_ptr<GstMessage, FreeWith<gst_message_unref>>;

/// A pipeline that ends when it goes out of sight.
class Pipeline {
 public:
  explicit Pipeline(const char* uri) : pipeline_(GRef<GstElement>::sink(gst_parse_launch(description, nullptr))) {
    if (!pipeline_) return;
    keepFramesInPages(*pipeline_.get());
    sink_ = find("frames");
    const auto source = find("source");
    const CapsPtr video(gst_caps_from_string("video/x-raw(ANY)"));
    g_object_set(source.get(), "uri", uri, "caps", video.get(), "expose-all-streams", FALSE, nullptr);
  }
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;
  ~Pipeline() {
    if (pipeline_) gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
  }

  SamplePtr firstSample(GstClockTime patience) const {
    if (!pipeline_) return nullptr;
    gst_element_set_state(pipeline_.get(), GST_STATE_PAUSED);
    const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(pipeline_.get()));
    constexpr auto endings = GstMessageType(GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_ERROR | GST_MESSAGE_EOS);
    const MessagePtr message(gst_bus_timed_pop_filtered(bus.get(), patience, endings));
    if (!message || GST_MESSAGE_TYPE(message.get()) != GST_MESSAGE_ASYNC_DONE) return nullptr;
    return SamplePtr(gst_app_sink_try_pull_preroll(GST_APP_SINK(sink_.get()), 0));
  }

 private:
  static constexpr const char* description =
      "uridecodebin name=source ! videoconvert ! videoflip video-direction=auto ! videoconvert ! "
      "video/x-raw,format=RGB ! appsink name=frames sync=false";

  GRef<GstElement> find(const char* name) const {
    return GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(pipeline_.get()), name));
  }

  GRef<GstElement> pipeline_;
  GRef<GstElement> sink_;
};

/// The pixels of a sample, mapped for reading.
class Frame {
 public:
  explicit Frame(GstSample* sample) {
    GstVideoInfo info;
    const auto* const caps = gst_sample_get_caps(sample);
    auto* const buffer = gst_sample_get_buffer(sample);
    isMapped_ = caps && buffer && gst_video_info_from_caps(&info, caps) &&
                gst_video_frame_map(&frame_, &info, buffer, GST_MAP_READ);
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame() {
    if (isMapped_) gst_video_frame_unmap(&frame_);
  }

  explicit operator bool() const { return isMapped_; }
  unsigned width() const { return static_cast<unsigned>(GST_VIDEO_FRAME_WIDTH(&frame_)); }
  unsigned height() const { return static_cast<unsigned>(GST_VIDEO_FRAME_HEIGHT(&frame_)); }
  const std::uint8_t* row(unsigned y) const {
    const auto stride = static_cast<std::ptrdiff_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, 0));
    return static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, 0)) + stride * y;
  }

 private:
  GstVideoFrame frame_{};
  bool isMapped_ = false;
};

}  // namespace

std::string firstFrame(const char* uri, double quality, GstClockTime patience) {
  const auto sample = Pipeline(uri).firstSample(patience);
  if (!sample) return {};
  const Frame frame(sample.get());
  if (!frame) return {};
  auto encoded = encodeRows(
      frame.width(), frame.height(), [&](unsigned y) { return frame.row(y); }, quality);
  auto* const jpeg = std::get_if<JpegImage>(&encoded);
  return jpeg ? std::move(jpeg->bytes) : std::string();
}

}  // namespace orivex::gtk
