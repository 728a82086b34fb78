#pragma once

#include "orivex/platform/ports/MediaProbe.h"

namespace orivex::gtk {

/// Measures videos with GStreamer, by what they hold and not by their names. A video without a decoder on this device
/// is measured all the same; it has no first frame then.
class GstMediaProbe final : public MediaProbe {
 public:
  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override;
};

}  // namespace orivex::gtk
