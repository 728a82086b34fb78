#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>

#include "orivex/platform/ports/ImageCodec.h"

namespace orivex::gtk {

/// Gives row `y` of a picture: three bytes a pixel, red, green and blue, valid until the next call. Does not throw.
using RgbRow = std::function<const std::uint8_t*(unsigned y)>;

/// Encodes a picture row by row. `quality` is from 0 to 1; `profile` is the ICC profile of its colours, or empty.
std::variant<JpegImage, Failure> encodeRows(unsigned width, unsigned height, const RgbRow& row, double quality,
                                            std::string_view profile = {});

}  // namespace orivex::gtk
