#pragma once

#include "orivex/platform/ports/ImageCodec.h"

namespace orivex::gtk {

/// Makes JPEGs with libjpeg-turbo. What a file holds is told by its first bytes, whatever its name: JPEGs are encoded
/// anew sample by sample (`JpegRecoder`), other pictures are decoded by the gdk-pixbuf loaders that are installed. Of
/// the original only the colour profile stays.
class PictureCodec final : public ImageCodec {
 public:
  std::variant<JpegImage, Failure> jpeg(const std::string& path, double quality) const override;
};

}  // namespace orivex::gtk
