#include "video/PreviewBranch.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <gst/video/video.h>

#include "video/Elements.h"

namespace orivex::gtk {
namespace {

// How much longer than the area a frame that fills it may be: a third. More would show too little of what is taken.
constexpr double mostCrop = 4.0 / 3;

/// Tells the scaler the size of what it gives as soon as that of what it gets is known.
struct Scaling {
  GRef<GstElement> filter;
  Size area;
};

GstPadProbeReturn formatComes(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer data) noexcept {
  auto* const event = gst_pad_probe_info_get_event(info);
  if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) return GST_PAD_PROBE_OK;
  GstCaps* caps = nullptr;
  gst_event_parse_caps(event, &caps);
  GstVideoInfo video;
  if (!gst_video_info_from_caps(&video, caps)) return GST_PAD_PROBE_OK;
  const auto& scaling = *static_cast<const Scaling*>(data);
  const double pixelAspect = static_cast<double>(GST_VIDEO_INFO_PAR_N(&video)) / GST_VIDEO_INFO_PAR_D(&video);
  const auto size = placedSize(
      {GST_VIDEO_INFO_WIDTH(&video) * pixelAspect, static_cast<double>(GST_VIDEO_INFO_HEIGHT(&video))}, scaling.area);
  const GstCapsPtr shown(gst_caps_new_simple(
      "video/x-raw", "format", G_TYPE_STRING, FrameFeed::format, "width", G_TYPE_INT, static_cast<int>(size.width),
      "height", G_TYPE_INT, static_cast<int>(size.height), "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr));
  g_object_set(scaling.filter.get(), "caps", shown.get(), nullptr);
  return GST_PAD_PROBE_OK;
}

}  // namespace

Size placedSize(Size frame, Size area) {
  const auto [less, more] = std::minmax({area.width / frame.width, area.height / frame.height});
  const double scale = more <= less * mostCrop ? more : less;
  return {std::max(1.0, std::round(frame.width * scale)), std::max(1.0, std::round(frame.height * scale))};
}

std::string previewBranch(bool keepsTime) {
  return "videoscale name=fit ! videoconvert ! capsfilter name=shown ! videoflip name=mirror ! appsink name=preview "
         "max-buffers=1 drop=true sync=" +
         std::string(keepsTime ? "true" : "false");
}

void connectPreview(GstElement& bin, Size area, bool mirrored, const std::shared_ptr<FrameFeed>& feed) {
  g_object_set(elementIn(bin, "mirror").get(), "video-direction",
               mirrored ? GST_VIDEO_ORIENTATION_HORIZ : GST_VIDEO_ORIENTATION_IDENTITY, nullptr);
  const auto pad = GRef<GstPad>::adopt(gst_element_get_static_pad(elementIn(bin, "fit").get(), "sink"));
  auto scaling = std::make_unique<Scaling>(Scaling{elementIn(bin, "shown"), area});
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, formatComes, scaling.release(),
                    [](gpointer data) { delete static_cast<Scaling*>(data); });
  handleSamples(*elementIn(bin, "preview").get(), [feed](SharedSample sample) { feed->push(std::move(sample)); });
}

}  // namespace orivex::gtk
