#pragma once

#include <cstdio>
#include <optional>
#include <variant>

#include "orivex/platform/ports/MediaReading.h"

namespace orivex::gtk {

/// Encodes a JPEG anew and upright without leaving its own colour space and subsampling: luma and chroma samples go
/// from decoder to encoder, so that nothing is converted. `quality` is from 0 to 1.
///
/// Nothing when the picture has colours other than YCbCr or grey, or subsampling that cannot be written back.
std::optional<std::variant<JpegImage, Failure>> recodeJpeg(std::FILE* file, double quality);

}  // namespace orivex::gtk
