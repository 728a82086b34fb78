#pragma once

#include <utility>

#include "../decoding/Decoder.h"

#include "orivex/platform/ports/MediaReading.h"

namespace orivex::gtk {

/// Measures videos with GStreamer, in a decoder.
class GstMediaProbe final : public MediaProbe {
 public:
  explicit GstMediaProbe(const Decoder& decoder) : decoder_(decoder) {}

  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override {
    constexpr double firstFrameQuality = 0.7;  // of the pictures that the page shows beside others
    auto result = decoder_.decode({.kind = Decoding::video, .quality = firstFrameQuality}, path);
    if (const auto* const failure = std::get_if<Failure>(&result)) {
      return Failure{path + " cannot be measured: " + failure->description};
    }
    auto& [facts, bytes] = std::get<Decoded>(result);
    return VideoFacts{
        facts.duration, {static_cast<double>(facts.width), static_cast<double>(facts.height)}, std::move(bytes)};
  }

 private:
  const Decoder& decoder_;
};

}  // namespace orivex::gtk
