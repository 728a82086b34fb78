#pragma once

#include "decoding/Decoder.h"

#include "orivex/platform/ports/MediaProbe.h"

namespace orivex::gtk {

/// Measures videos with GStreamer, in a decoder.
class GstMediaProbe final : public MediaProbe {
 public:
  explicit GstMediaProbe(const Decoder& decoder) : decoder_(decoder) {}

  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override;

 private:
  const Decoder& decoder_;
};

}  // namespace orivex::gtk
