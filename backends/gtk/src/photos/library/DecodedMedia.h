#pragma once

#include "../../decoding/Decoder.h"
#include "MediaReader.h"

namespace orivex::gtk {

/// Has photos and videos read by a decoder.
class DecodedMedia final : public MediaReader {
 public:
  explicit DecodedMedia(const Decoder& decoder) : decoder_(decoder) {}

  std::optional<Thumbnail> read(const MediaItem& item, int width, int height) const override;

 private:
  const Decoder& decoder_;
};

}  // namespace orivex::gtk
