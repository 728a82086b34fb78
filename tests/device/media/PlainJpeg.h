#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <jpeglib.h>

namespace orivex::gtk {

using RgbColor = std::array<int, 3>;

/// A picture in memory, three bytes a pixel.
struct RgbImage {
  unsigned width = 0;
  unsigned height = 0;
  std::vector<std::uint8_t> samples = std::vector<std::uint8_t>(std::size_t{width} * height * 3);

  std::uint8_t* row(unsigned y) { return samples.data() + std::size_t{y} * width * 3; }
  const std::uint8_t* row(unsigned y) const { return samples.data() + std::size_t{y} * width * 3; }
  RgbColor at(unsigned x, unsigned y) const {
    const auto* const pixel = row(y) + std::size_t{x} * 3;
    return {pixel[0], pixel[1], pixel[2]};
  }
};

/// Peak signal-to-noise ratio in dB of two pictures of one size: 99 when they are the same.
double psnr(const RgbImage& one, const RgbImage& other);

/// Four quarters: red, green, blue and white, from the top left by rows.
RgbImage quarters(unsigned width, unsigned height);

/// Waves with a hard edge and a sensor's noise. The same for the same `seed`.
RgbImage wavyPicture(unsigned width, unsigned height, unsigned seed);

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
