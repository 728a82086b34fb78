#pragma once

#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Interface.h"

namespace orivex {

struct JpegImage {
  std::string bytes;
  Size size;  ///< pixels, as the picture is seen
};

/// Makes JPEGs of picture files.
class ImageCodec : public Interface {
 public:
  /// The picture at `path` as a JPEG of its full size, upright, on white where it is transparent, the first frame of a
  /// moving one, without any metadata of the original. `quality` is from 0 to 1. Any thread; blocks, and takes the
  /// memory of the decoded picture meanwhile.
  virtual std::variant<JpegImage, Failure> jpeg(const std::string& path, double quality) const = 0;
};

struct VideoFacts {
  double duration = 0;         ///< seconds
  Size size;                   ///< pixels of the first video track, as it is seen
  std::string firstFrameJpeg;  ///< empty when it cannot be decoded
};

/// Measures videos.
class MediaProbe : public Interface {
 public:
  /// Measures the video at `path`. Any thread but the main thread; blocks, at most 10 s.
  virtual std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const = 0;
};

}  // namespace orivex
