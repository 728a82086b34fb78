#pragma once

#include <map>
#include <string>

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/MediaProbe.h"

namespace orivex::testing {

/// Gives the facts that a test has put in place of measured videos.
class VirtualMediaProbe final : public MediaProbe {
 public:
  explicit VirtualMediaProbe(const MainQueue& queue) : queue_(queue) {}

  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override;

  /// What the video at `path` is. Any other path is no video.
  void put(const std::string& path, VideoFacts facts) { videos_.insert_or_assign(path, std::move(facts)); }

 private:
  const MainQueue& queue_;
  std::map<std::string, VideoFacts> videos_;
};

}  // namespace orivex::testing
