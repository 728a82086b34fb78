#pragma once

#include "../decoding/Decoder.h"

#include "orivex/platform/ports/MediaReading.h"

namespace orivex::gtk {

/// Makes JPEGs in a decoder.
class PictureCodec final : public ImageCodec {
 public:
  explicit PictureCodec(const Decoder& decoder) : decoder_(decoder) {}

  std::variant<JpegImage, Failure> jpeg(const std::string& path, double quality) const override;

 private:
  const Decoder& decoder_;
};

}  // namespace orivex::gtk
