#pragma once

#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Geometry.h"

namespace orivex {

struct VideoFacts {
  double duration = 0;         ///< seconds
  Size size;                   ///< pixels of the first video track, as it is seen
  std::string firstFrameJpeg;  ///< empty when it cannot be decoded
};

/// Measures videos.
class MediaProbe {
 public:
  MediaProbe() = default;
  MediaProbe(const MediaProbe&) = delete;
  MediaProbe& operator=(const MediaProbe&) = delete;
  virtual ~MediaProbe() = default;

  /// Measures the video at `path`. Any thread but the main thread; blocks, at most 10 s.
  virtual std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const = 0;
};

}  // namespace orivex
