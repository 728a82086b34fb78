#include "FrameFeed.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "../glib/GMemory.h"
#include "Pipeline.h"

namespace orivex::gtk {
namespace {

// How much longer than the area a frame that fills it may be: a third. More would show too little of what is taken.
constexpr double mostCrop = 4.0 / 3;

/// What the scaler's probe needs: the filter behind it, and the area.
struct Scaling {
  GRef<GstElement> filter;
  Size area;
};

// Sets the size behind the scaler as soon as that before it is known.
GstPadProbeReturn eventReceived(GstPad* /*pad*/, GstPadProbeInfo* info, gpointer data) noexcept {
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
      "video/x-raw", "format", G_TYPE_STRING, "BGRA", "width", G_TYPE_INT, static_cast<int>(size.width), "height",
      G_TYPE_INT, static_cast<int>(size.height), "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr));
  g_object_set(scaling.filter.get(), "caps", shown.get(), nullptr);
  return GST_PAD_PROBE_OK;
}

GRef<GdkTexture> textureOf(SharedSample sample) {
  auto frame = std::make_unique<MappedFrame>(std::move(sample));
  if (!*frame) return nullptr;
  const int width = frame->width();
  const int height = frame->height();
  const auto stride = static_cast<gsize>(frame->stride());
  const auto* const pixels = frame->pixels();
  const GBytesPtr bytes(g_bytes_new_with_free_func(
      pixels, stride * static_cast<gsize>(height), [](gpointer data) { delete static_cast<MappedFrame*>(data); },
      frame.release()));
  // Frames are opaque, and so premultiplied already: the format that every renderer takes without a conversion.
  return GRef<GdkTexture>::adopt(
      gdk_memory_texture_new(width, height, GDK_MEMORY_B8G8R8A8_PREMULTIPLIED, bytes.get(), stride));
}

}  // namespace

Size placedSize(Size frame, Size area) {
  const auto [less, more] = std::minmax({area.width / frame.width, area.height / frame.height});
  const double scale = more <= less * mostCrop ? more : less;
  return {std::max(1.0, std::round(frame.width * scale)), std::max(1.0, std::round(frame.height * scale))};
}

std::string FrameFeed::branch(bool sync) {
  return "videoscale name=fit ! videoconvert ! capsfilter name=shown ! videoflip name=mirror ! appsink name=preview "
         "max-buffers=1 drop=true sync=" +
         std::string(sync ? "true" : "false");
}

void FrameFeed::connect(GstElement& bin, Size area, bool mirrored) {
  g_object_set(elementIn(bin, "mirror").get(), "video-direction",
               mirrored ? GST_VIDEO_ORIENTATION_HORIZ : GST_VIDEO_ORIENTATION_IDENTITY, nullptr);
  const auto pad = GRef<GstPad>::adopt(gst_element_get_static_pad(elementIn(bin, "fit").get(), "sink"));
  auto scaling = std::make_unique<Scaling>(Scaling{elementIn(bin, "shown"), area});
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, eventReceived, scaling.release(),
                    [](gpointer data) { delete static_cast<Scaling*>(data); });
  handleSamples(*elementIn(bin, "preview").get(),
                [self = shared_from_this()](SharedSample sample) { self->push(std::move(sample)); });
}

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

}  // namespace orivex::gtk
