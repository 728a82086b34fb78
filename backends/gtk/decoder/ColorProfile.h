#pragma once

#include <string>
#include <string_view>

#include <lcms2.h>

namespace orivex::gtk {

/// An ICC profile that holds nothing but what turns colours into those of a display: texts, dates, makers and private
/// tags of the original are gone. Empty when `profile` is, or is damaged or not for `colors`.
std::string plainProfile(std::string_view profile, cmsColorSpaceSignature colors);

}  // namespace orivex::gtk
