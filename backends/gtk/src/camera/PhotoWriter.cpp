#include "PhotoWriter.h"

#include <gst/app/gstappsrc.h>

#include "../glib/GRef.h"
#include "../video/Elements.h"
#include "../video/FrameMemory.h"

namespace orivex::gtk {
namespace {

// The quality is high enough that the picture can be compressed once more before it is sent. A JPEG's colours use the
// full range of their bytes, a video's do not.
constexpr const char* description =
    "appsrc name=in format=time ! videoconvert ! video/x-raw,format=I420,colorimetry=1:4:7:1 ! jpegenc quality=92 "
    "! filesink name=out";

// One picture takes a hundredth of this, on a slow disk too.
constexpr GstClockTime longestWrite = 10 * GST_SECOND;

std::optional<Failure> write(GstElement& pipeline, GstSample& frame) {
  const auto in = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(&pipeline), "in"));
  gst_element_set_state(&pipeline, GST_STATE_PLAYING);
  gst_app_src_push_sample(GST_APP_SRC(in.get()), &frame);
  gst_app_src_end_of_stream(GST_APP_SRC(in.get()));
  const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(&pipeline));
  const GstMessagePtr message(gst_bus_timed_pop_filtered(
      bus.get(), longestWrite, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
  if (!message) return Failure{"the disk does not take the photo"};
  if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS) return std::nullopt;
  GError* error = nullptr;
  gst_message_parse_error(message.get(), &error, nullptr);
  return Failure{adoptError(error).text};
}

}  // namespace

std::optional<Failure> writePhoto(const SharedSample& frame, const std::string& path) {
  GError* error = nullptr;
  const auto pipeline =
      GRef<GstElement>::sink(gst_parse_launch_full(description, nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error));
  if (error || !pipeline) return Failure{adoptError(error).text};
  keepFramesInPages(*pipeline.get());
  const auto out = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(pipeline.get()), "out"));
  g_object_set(out.get(), "location", path.c_str(), nullptr);
  auto failure = write(*pipeline.get(), *frame);
  gst_element_set_state(pipeline.get(), GST_STATE_NULL);
  return failure;
}

}  // namespace orivex::gtk
