#pragma once

#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Geometry.h"

namespace orivex {

struct JpegImage {
  std::string bytes;
  Size size;  ///< pixels, as the picture is seen
};

/// Makes JPEGs of picture files.
class ImageCodec {
 public:
  ImageCodec() = default;
  ImageCodec(const ImageCodec&) = delete;
  ImageCodec& operator=(const ImageCodec&) = delete;
  virtual ~ImageCodec() = default;

  /// The picture at `path` as a JPEG of its full size, upright, on white where it is transparent, the first frame of a
  /// moving one, without any metadata of the original. `quality` is from 0 to 1. Any thread; blocks, and takes the
  /// memory of the decoded picture meanwhile.
  virtual std::variant<JpegImage, Failure> jpeg(const std::string& path, double quality) const = 0;
};

}  // namespace orivex
