#pragma once

#include <string>
#include <string_view>
#include <vector>

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
  enum class Colors { yCbCr, grey, rgb, cmyk, ycck } colors = Colors::yCbCr;
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
