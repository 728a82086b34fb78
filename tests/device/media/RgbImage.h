#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

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
  bool operator==(const RgbImage&) const = default;
};

/// Peak signal-to-noise ratio in dB of two pictures of one size: 99 when they are the same.
double psnr(const RgbImage& one, const RgbImage& other);

/// A picture with the statistics of a photo: leaves of all sizes that hide each other, a texture on each whose contrast
/// falls with its frequency, soft focus in parts, and a sensor's noise. The same for the same `seed`.
RgbImage naturalPhoto(unsigned width, unsigned height, unsigned seed);

/// Four quarters: red, green, blue and white, from the top left by rows.
RgbImage quarters(unsigned width, unsigned height);

}  // namespace orivex::gtk
