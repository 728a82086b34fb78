#pragma once

#include <optional>
#include <string>

#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// How a clip is encoded, in pieces of GStreamer's launch syntax.
struct ClipFormat {
  std::string video;  ///< raw pictures to H.264
  std::string sound;  ///< raw sound to AAC or what else there is; empty when there is nothing
  std::string muxer;
};

/// The best that the installed plug-ins can do; nothing without an H.264 encoder or a muxer. Worker; may load plug-ins.
std::optional<ClipFormat> chooseClipFormat(VideoExportType type);

}  // namespace orivex::gtk
