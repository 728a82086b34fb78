#pragma once

#include "orivex/platform/ports/MediaProbe.h"

namespace orivex::gtk {

/// Measures videos with GStreamer, by what they hold and not by their names. A video without a decoder on this device
/// is a failure; a sound track without one does not matter.
class GstMediaProbe final : public MediaProbe {
 public:
  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override;
};

}  // namespace orivex::gtk
