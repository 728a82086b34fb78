#include "FirstFrame.h"

#include <gst/app/app.h>

#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

/// A pipeline that ends when it goes out of sight.
class FrameRun {
 public:
  explicit FrameRun(const char* uri) : pipeline_(GRef<GstElement>::sink(gst_parse_launch(description, nullptr))) {
    if (!pipeline_) return;
    sink_ = find("frames");
    const auto source = find("source");
    const GstCapsPtr video(gst_caps_from_string("video/x-raw(ANY)"));
    g_object_set(source.get(), "uri", uri, "caps", video.get(), "expose-all-streams", FALSE, nullptr);
  }
  FrameRun(const FrameRun&) = delete;
  FrameRun& operator=(const FrameRun&) = delete;
  ~FrameRun() {
    if (pipeline_) gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
  }

  SharedSample firstSample(GstClockTime patience) const {
    if (!pipeline_) return nullptr;
    gst_element_set_state(pipeline_.get(), GST_STATE_PAUSED);
    const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(pipeline_.get()));
    constexpr auto endings = GstMessageType(GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_ERROR | GST_MESSAGE_EOS);
    const GstMessagePtr message(gst_bus_timed_pop_filtered(bus.get(), patience, endings));
    if (!message || GST_MESSAGE_TYPE(message.get()) != GST_MESSAGE_ASYNC_DONE) return nullptr;
    return adoptSample(gst_app_sink_try_pull_preroll(GST_APP_SINK(sink_.get()), 0));
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

}  // namespace

SharedSample firstFrame(const char* uri, GstClockTime patience) {
  return FrameRun(uri).firstSample(patience);
}

}  // namespace orivex::gtk
