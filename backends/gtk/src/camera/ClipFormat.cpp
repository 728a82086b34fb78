#include "ClipFormat.h"

#include <algorithm>
#include <array>

#include <gst/gst.h>

#include "../glib/GRef.h"

namespace orivex::gtk {
namespace {

struct Encoder {
  const char* factory;
  const char* launch;
};

// In order of preference. Ten seconds of 1280 by 720 at this rate are five megabytes, and a key picture a second lets
// players jump. The software encoder comes before the hardware's: it does the same everywhere, and keeps up at this
// size on every machine that we know of.
constexpr std::array videoEncoders{
    Encoder{"x264enc", "x264enc tune=zerolatency speed-preset=ultrafast bitrate=4000 key-int-max=30"},
    Encoder{"openh264enc", "openh264enc complexity=low rate-control=bitrate bitrate=4000000 gop-size=30"},
    Encoder{"v4l2h264enc", "v4l2h264enc"},
};
constexpr std::array soundEncoders{
    Encoder{"avenc_aac", "avenc_aac bitrate=96000"},
    Encoder{"voaacenc", "voaacenc bitrate=96000"},
    Encoder{"faac", "faac bitrate=96000"},
    Encoder{"opusenc", "opusenc bitrate=64000"},
};

bool isInstalled(const char* factory) {
  return static_cast<bool>(GRef<GstElementFactory>::adopt(gst_element_factory_find(factory)));
}

template <std::size_t count>
std::string firstInstalled(const std::array<Encoder, count>& encoders) {
  const auto* const found = std::find_if(encoders.begin(), encoders.end(),
                                         [](const Encoder& encoder) { return isInstalled(encoder.factory); });
  return found == encoders.end() ? "" : found->launch;
}

}  // namespace

std::optional<ClipFormat> chooseClipFormat(VideoExportType type) {
  const char* const muxer = type == VideoExportType::mp4 ? "mp4mux" : "qtmux";
  ClipFormat format{firstInstalled(videoEncoders), firstInstalled(soundEncoders), muxer};
  if (format.video.empty() || !isInstalled(muxer)) return std::nullopt;
  return format;
}

}  // namespace orivex::gtk
