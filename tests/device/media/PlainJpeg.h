#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <jpeglib.h>

#include "RgbImage.h"

namespace orivex::gtk {

struct JpegMarker {
  int code;  ///< such as 0xE1
  std::string payload;
};

struct PlainJpegOptions {
  int quality = 92;
  int lumaAcross = 2;  ///< luma samples per chroma sample
  int lumaDown = 2;
  J_COLOR_SPACE colors = JCS_YCbCr;
  bool progressive = false;
  std::vector<JpegMarker> markers{};
};

/// libjpeg as one finds it in its manual: pixels in, pixels out, the whole picture in memory. A broken file ends the
/// process.
std::string encodePlainJpeg(const RgbImage& image, const PlainJpegOptions& options = {});
RgbImage decodePlainJpeg(std::string_view bytes);

/// Every marker of a JPEG before its first scan, in order.
std::vector<JpegMarker> markersOf(std::string_view bytes);

}  // namespace orivex::gtk
