#include "video/GstMediaProbe.h"

#include <algorithm>
#include <chrono>
#include <string_view>

#include <gst/pbutils/pbutils.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"
#include "pictures/RegularFile.h"
#include "video/FirstFrame.h"

namespace orivex::gtk {
namespace {

using Clock = std::chrono::steady_clock;
using Streams = std::unique_ptr<GList, FreeWith<gst_discoverer_stream_info_list_free>>;

// A video in order takes a fraction of a second; of one that was cut off, GStreamer may wait for the rest for ever.
constexpr std::chrono::seconds longestProbe{10};
constexpr GstClockTime longestMeasuring = 5 * GST_SECOND;
constexpr double nanosecondsPerSecond = GST_SECOND;

// The quality of the pictures that the page shows beside others.
constexpr double firstFrameQuality = 0.7;

GstClockTime untilTime(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(deadline - Clock::now()).count();
  return static_cast<GstClockTime>(std::max<std::int64_t>(left, 0));
}

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

std::variant<VideoFacts, Failure> measure(const std::string& path) {
  const auto deadline = Clock::now() + longestProbe;
  const GCharPtr uri(gst_filename_to_uri(path.c_str(), nullptr));
  if (!uri) return Failure{"has no address"};
  auto discovered = discover(uri.get());
  if (auto* const failure = std::get_if<Failure>(&discovered)) return std::move(*failure);
  auto* const info = std::get<GRef<GstDiscovererInfo>>(discovered).get();
  const Streams streams(gst_discoverer_info_get_video_streams(info));
  auto* const video = firstVideo(streams);
  if (!video) return Failure{"has no video track"};
  VideoFacts facts{secondsOf(info), sizeOf(video), {}};
  if (facts.size.width == 0 || facts.size.height == 0) return Failure{"has a video track of unknown size"};
  facts.firstFrameJpeg = firstFrame(uri.get(), firstFrameQuality, untilTime(deadline));
  return facts;
}

}  // namespace

std::variant<VideoFacts, Failure> GstMediaProbe::probeVideo(const std::string& path) const {
  if (auto opened = openRegularFile(path); auto* const failure = std::get_if<Failure>(&opened)) {
    return std::move(*failure);
  }
  gst_init(nullptr, nullptr);
  auto result = measure(path);
  if (auto* const failure = std::get_if<Failure>(&result)) {
    failure->description = path + " cannot be measured: " + failure->description;
  }
  return result;
}

}  // namespace orivex::gtk
