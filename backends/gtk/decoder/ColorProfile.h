#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orivex::gtk {

/// An ICC profile that holds nothing but what turns colours into those of a display: texts, dates, makers and private
/// tags of the original are gone. Empty when `profile` is damaged or not for pictures of `colorSpace` (the four
/// characters by which ICC names it).
std::string colorsOfProfile(std::span<const std::uint8_t> profile, std::string_view colorSpace);

}  // namespace orivex::gtk
