#include "video/GstMediaProbe.h"

#include <utility>

namespace orivex::gtk {
namespace {

// The quality of the pictures that the page shows beside others.
constexpr double firstFrameQuality = 0.7;

}  // namespace

std::variant<VideoFacts, Failure> GstMediaProbe::probeVideo(const std::string& path) const {
  auto result = decoder_.decode({.kind = Decoding::video, .quality = firstFrameQuality}, path);
  if (const auto* const failure = std::get_if<Failure>(&result)) {
    return Failure{path + " cannot be measured: " + failure->description};
  }
  auto& [facts, bytes] = std::get<Decoded>(result);
  return VideoFacts{
      facts.duration, {static_cast<double>(facts.width), static_cast<double>(facts.height)}, std::move(bytes)};
}

}  // namespace orivex::gtk
