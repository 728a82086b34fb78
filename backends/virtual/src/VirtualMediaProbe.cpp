#include "orivex/testing/VirtualMediaProbe.h"

#include "orivex/platform/base/Log.h"

namespace orivex::testing {

std::variant<VideoFacts, Failure> VirtualMediaProbe::probeVideo(const std::string& path) const {
  if (queue_.isMainThread())
    fatalError("OrivexSDK/VirtualDevice", "MediaProbe::probeVideo was called on the main thread");
  const auto found = videos_.find(path);
  if (found == videos_.end()) return Failure{path + " is not a video"};
  return found->second;
}

}  // namespace orivex::testing
