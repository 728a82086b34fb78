#include "VideoReading.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>

#include <gst/app/app.h>
#include <gst/pbutils/pbutils.h>

#include "PictureLimits.h"
#include "TurboJpeg.h"
#include "av/Samples.h"
#include "av/VideoContainer.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

using Clock = std::chrono::steady_clock;
using Streams = std::unique_ptr<GList, FreeWith<gst_discoverer_stream_info_list_free>>;

// A video in order takes a fraction of a second; of one that was cut off, GStreamer may wait for the rest for ever. The
// component waits for ten seconds.
constexpr std::chrono::seconds longestProbe{9};
constexpr GstClockTime longestMeasuring = 5 * GST_SECOND;
constexpr double nanosecondsPerSecond = GST_SECOND;

struct StopPipeline {
  void operator()(GstElement* pipeline) const {
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
  }
};

bool isTurnedSideways(const GstTagList* tags) {
  const gchar* orientation = nullptr;
  if (!tags || !gst_tag_list_peek_string_index(tags, GST_TAG_IMAGE_ORIENTATION, 0, &orientation)) return false;
  return std::string_view(orientation).ends_with("rotate-90") || std::string_view(orientation).ends_with("rotate-270");
}

// A cover picture counts as no video.
GstDiscovererVideoInfo* firstVideo(const Streams& streams) {
  for (const auto* item = streams.get(); item; item = item->next) {
    auto* const video = GST_DISCOVERER_VIDEO_INFO(item->data);
    if (!gst_discoverer_video_info_is_image(video)) return video;
  }
  return nullptr;
}

Size sizeOf(GstDiscovererVideoInfo* video) {
  const Size size{static_cast<double>(gst_discoverer_video_info_get_width(video)),
                  static_cast<double>(gst_discoverer_video_info_get_height(video))};
  const bool turned = isTurnedSideways(gst_discoverer_stream_info_get_tags(GST_DISCOVERER_STREAM_INFO(video)));
  return turned ? Size{size.height, size.width} : size;
}

// What a file without a known length says of it.
double secondsOf(GstDiscovererInfo* info) {
  const auto duration = gst_discoverer_info_get_duration(info);
  return GST_CLOCK_TIME_IS_VALID(duration) ? static_cast<double>(duration) / nanosecondsPerSecond : 0;
}

bool hasVideo(GstDiscovererInfo* info) {
  return Streams(gst_discoverer_info_get_video_streams(info)) != nullptr;
}

std::variant<GRef<GstDiscovererInfo>, Failure> discover(const char* uri) {
  GError* raw = nullptr;
  const auto discoverer = GRef<GstDiscoverer>::adopt(gst_discoverer_new(longestMeasuring, &raw));
  auto info = discoverer ? GRef<GstDiscovererInfo>::adopt(gst_discoverer_discover_uri(discoverer.get(), uri, &raw))
                         : GRef<GstDiscovererInfo>();
  const GErrorPtr error(raw);
  const auto result = info ? gst_discoverer_info_get_result(info.get()) : GST_DISCOVERER_ERROR;
  if (result == GST_DISCOVERER_TIMEOUT) return Failure{"takes too long to be measured"};
  if (result == GST_DISCOVERER_MISSING_PLUGINS && !hasVideo(info.get())) {
    return Failure{"needs a decoder that this device lacks"};
  }
  if (result == GST_DISCOVERER_OK || result == GST_DISCOVERER_MISSING_PLUGINS) return info;
  return Failure{error ? error->message : "is not a video"};
}

/// An open file that holds a video.
struct Video {
  std::string uri;
  double duration;
  Size size;
  Clock::time_point deadline;
};

std::variant<Video, Failure> inspect(int file) {
  const auto deadline = Clock::now() + longestProbe;
  const auto path = "/proc/self/fd/" + std::to_string(file);
  if (!isVideoContainer(path)) return Failure{"is not a video"};
  const auto uri = "file://" + path;
  auto discovered = discover(uri.c_str());
  if (auto* const failure = std::get_if<Failure>(&discovered)) return std::move(*failure);
  auto* const info = std::get<GRef<GstDiscovererInfo>>(discovered).get();
  const Streams streams(gst_discoverer_info_get_video_streams(info));
  auto* const video = firstVideo(streams);
  if (!video) return Failure{"has no video track"};
  const auto size = sizeOf(video);
  if (size.width == 0 || size.height == 0) return Failure{"has a video track of unknown size"};
  constexpr std::uint64_t bytesPerPixel = 4;
  const auto width = static_cast<std::uint64_t>(size.width);
  const auto height = static_cast<std::uint64_t>(size.height);
  if (isTooLarge(width, height, width * height * bytesPerPixel)) return Failure{"too large to be decoded"};
  return Video{uri, secondsOf(info), size, deadline};
}

// In RGB, upright; false when it cannot be decoded in time.
MappedFrame firstFrame(const Video& video) {
  const auto description = "uridecodebin caps=\"video/x-raw(ANY)\" expose-all-streams=false uri=" + video.uri +
                           " ! videoconvert ! videoflip video-direction=auto ! videoconvert ! video/x-raw,format=RGB "
                           "! appsink name=frames sync=false";
  const std::unique_ptr<GstElement, StopPipeline> pipeline(gst_parse_launch(description.c_str(), nullptr));
  if (!pipeline) return MappedFrame(nullptr);
  gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);
  const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(pipeline.get()));
  const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(video.deadline - Clock::now()).count();
  constexpr auto endings = GstMessageType(GST_MESSAGE_ASYNC_DONE | GST_MESSAGE_ERROR | GST_MESSAGE_EOS);
  const GstMessagePtr message(
      gst_bus_timed_pop_filtered(bus.get(), static_cast<GstClockTime>(std::max<std::int64_t>(left, 0)), endings));
  if (!message || GST_MESSAGE_TYPE(message.get()) != GST_MESSAGE_ASYNC_DONE) return MappedFrame(nullptr);
  const auto sink = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(pipeline.get()), "frames"));
  return MappedFrame(adoptSample(gst_app_sink_try_pull_preroll(GST_APP_SINK(sink.get()), 0)));
}

bool isAllowed(GstElementFactory* factory) {
  constexpr std::array<std::string_view, 8> demuxers{"qtdemux",     "matroskademux", "avidemux", "tsdemux",
                                                     "mpegpsdemux", "flvdemux",      "oggdemux", "asfdemux"};
  const std::string_view kind(gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS));
  const std::string_view name(GST_OBJECT_NAME(factory));
  const auto is = [&](std::string_view word) { return kind.find(word) != std::string_view::npos; };
  if (is("Demux")) return std::find(demuxers.begin(), demuxers.end(), name) != demuxers.end();
  if (is("Source")) return name == "filesrc";
  return !is("Hardware");  // whose memory is nobody's
}

}  // namespace

void prepareVideos() {
  gst_init(nullptr, nullptr);
  auto* const registry = gst_registry_get();
  auto* const features = gst_registry_get_feature_list(registry, GST_TYPE_ELEMENT_FACTORY);
  for (auto* item = features; item; item = item->next) {
    if (!isAllowed(GST_ELEMENT_FACTORY(item->data))) {
      gst_plugin_feature_set_rank(GST_PLUGIN_FEATURE(item->data), GST_RANK_NONE);
    }
  }
  gst_plugin_feature_list_free(features);
}

std::variant<VideoFacts, Failure> measureVideo(int file, double quality) {
  auto inspected = inspect(file);
  if (auto* const failure = std::get_if<Failure>(&inspected)) return std::move(*failure);
  const auto& video = std::get<Video>(inspected);
  VideoFacts facts{video.duration, video.size, {}};
  const auto frame = firstFrame(video);
  if (!frame) return facts;
  auto encoded = encodePixels({frame.pixels(), frame.width(), frame.height(), frame.stride(), TJPF_RGB}, quality);
  if (auto* const jpeg = std::get_if<JpegImage>(&encoded)) facts.firstFrameJpeg = std::move(jpeg->bytes);
  return facts;
}

std::variant<ScaledFrame, Failure> readFrame(int file, PixelSize most) {
  auto inspected = inspect(file);
  if (auto* const failure = std::get_if<Failure>(&inspected)) return std::move(*failure);
  const auto& video = std::get<Video>(inspected);
  const auto frame = firstFrame(video);
  if (!frame) return Failure{"has no picture"};
  const auto size = fitted({frame.width(), frame.height()}, most);
  const auto whole = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_data(
      frame.pixels(), GDK_COLORSPACE_RGB, FALSE, 8, frame.width(), frame.height(), frame.stride(), nullptr, nullptr));
  auto scaled =
      GRef<GdkPixbuf>::adopt(gdk_pixbuf_scale_simple(whole.get(), size.width, size.height, GDK_INTERP_BILINEAR));
  if (!scaled) return Failure{"has no picture"};
  return ScaledFrame{std::move(scaled), video.duration};
}

}  // namespace orivex::gtk
