#include "NaturalPhoto.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace orivex::gtk {
namespace {

using Random = std::mt19937;

double uniform(Random& random, double low, double high) {
  return std::uniform_real_distribution<double>(low, high)(random);
}

/// Smooth noise of one frequency: random values on a grid of `cell` pixels, joined linearly.
class NoiseOctave {
 public:
  NoiseOctave(unsigned width, unsigned height, unsigned cell, Random& random)
      : cell_(cell), columns_(width / cell + 2), values_(std::size_t{columns_} * (height / cell + 2)) {
    for (auto& value : values_) value = static_cast<float>(uniform(random, -1, 1));
  }

  float at(unsigned x, unsigned y) const {
    const auto* const corner = values_.data() + std::size_t{y / cell_} * columns_ + x / cell_;
    const float right = static_cast<float>(x % cell_) / static_cast<float>(cell_);
    const float down = static_cast<float>(y % cell_) / static_cast<float>(cell_);
    const float above = corner[0] + (corner[1] - corner[0]) * right;
    const float below = corner[columns_] + (corner[columns_ + 1] - corner[columns_]) * right;
    return above + (below - above) * down;
  }

 private:
  unsigned cell_;
  unsigned columns_;
  std::vector<float> values_;
};

struct Leaf {
  float x, y, radius, contrast;
  std::array<float, 3> color;
};

std::vector<Leaf> scatterLeaves(unsigned width, unsigned height, Random& random) {
  const double largest = std::max(width, height) / 4.0;
  std::vector<Leaf> leaves;
  for (int count = 0; count < 900; ++count) {
    Leaf leaf{};
    leaf.x = static_cast<float>(uniform(random, 0, width));
    leaf.y = static_cast<float>(uniform(random, 0, height));
    leaf.radius = static_cast<float>(largest * std::pow(uniform(random, 0.02, 1), 2));
    leaf.contrast = static_cast<float>(uniform(random, 0.2, 1));
    const double light = uniform(random, 30, 225);
    for (auto& channel : leaf.color) channel = static_cast<float>(light + uniform(random, -30, 30));
    leaves.push_back(leaf);
  }
  std::sort(leaves.begin(), leaves.end(), [](const Leaf& one, const Leaf& other) { return one.radius > other.radius; });
  return leaves;
}

// For each pixel the leaf that is seen there; small ones lie on top.
std::vector<std::uint16_t> placeLeaves(unsigned width, unsigned height, const std::vector<Leaf>& leaves) {
  std::vector<std::uint16_t> seen(std::size_t{width} * height);
  for (std::size_t index = 0; index < leaves.size(); ++index) {
    const auto& leaf = leaves[index];
    const auto top = static_cast<unsigned>(std::max(0.0F, leaf.y - leaf.radius));
    const auto bottom = std::min(height, static_cast<unsigned>(leaf.y + leaf.radius));
    for (unsigned y = top; y < bottom; ++y) {
      const float away = static_cast<float>(y) - leaf.y;
      const float half = std::sqrt(std::max(0.0F, leaf.radius * leaf.radius - away * away));
      const auto left = static_cast<unsigned>(std::max(0.0F, leaf.x - half));
      const auto right = std::min(width, static_cast<unsigned>(leaf.x + half));
      if (left < right)
        std::fill_n(seen.begin() + std::ptrdiff_t{y} * width + left, right - left, static_cast<std::uint16_t>(index));
    }
  }
  return seen;
}

}  // namespace

RgbImage naturalPhoto(unsigned width, unsigned height, unsigned seed) {
  Random random(seed);
  const auto leaves = scatterLeaves(width, height, random);
  const auto seen = placeLeaves(width, height, leaves);
  std::vector<NoiseOctave> octaves;
  for (unsigned cell = 2; cell <= 256; cell *= 2) octaves.emplace_back(width, height, cell, random);

  RgbImage image{width, height};
  std::uint32_t grain = seed * 2654435761U + 1;
  for (unsigned y = 0; y < height; ++y) {
    auto* out = image.row(y);
    for (unsigned x = 0; x < width; ++x) {
      const auto& leaf = leaves[seen[std::size_t{y} * width + x]];
      float texture = 0;
      float weight = 8.0F;
      for (const auto& octave : octaves) texture += octave.at(x, y) * (weight *= 1.15F);
      for (const auto channel : leaf.color) {
        grain = grain * 1664525U + 1013904223U;
        const float noise = static_cast<float>(grain >> 24U) / 32.0F - 4.0F;
        *out++ = static_cast<std::uint8_t>(std::clamp(channel + texture * leaf.contrast + noise, 0.0F, 255.0F));
      }
    }
  }
  return image;
}

}  // namespace orivex::gtk
