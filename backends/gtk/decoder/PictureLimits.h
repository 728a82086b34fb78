#pragma once

#include <cstdint>

namespace orivex::gtk {

/// Twice the largest panorama that a phone makes: beyond it, a small file that claims to be a picture is an attack.
constexpr std::uint64_t maximumPixels = 200'000'000;

/// What a picture may need in memory at once when it cannot be worked on row by row: a phone shares its memory.
constexpr std::uint64_t maximumHeldBytes = std::uint64_t{512} << 20U;

/// Whether a picture of this size is refused; `heldBytes` of it are in memory at once.
constexpr bool isTooLarge(std::uint64_t width, std::uint64_t height, std::uint64_t heldBytes) {
  return width * height > maximumPixels || heldBytes > maximumHeldBytes;
}

}  // namespace orivex::gtk
