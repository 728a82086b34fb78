#include "ColorProfile.h"

#include <algorithm>
#include <array>
#include <memory>

namespace orivex::gtk {
namespace {

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};

using Profile = std::unique_ptr<void, CloseProfile>;

// A profile of a camera or display has a few kilobytes; those of printing presses are not for pictures to look at.
constexpr std::size_t maximumBytes = std::size_t{1} << 20U;

constexpr auto cicpTag = static_cast<cmsTagSignature>(0x63696370);  // of ICC.1:2022, newer than lcms2's list
constexpr std::array colorTags{cmsSigRedColorantTag,
                               cmsSigGreenColorantTag,
                               cmsSigBlueColorantTag,
                               cmsSigRedTRCTag,
                               cmsSigGreenTRCTag,
                               cmsSigBlueTRCTag,
                               cmsSigGrayTRCTag,
                               cmsSigMediaWhitePointTag,
                               cmsSigMediaBlackPointTag,
                               cmsSigChromaticAdaptationTag,
                               cmsSigAToB0Tag,
                               cmsSigAToB1Tag,
                               cmsSigAToB2Tag,
                               cmsSigBToA0Tag,
                               cmsSigBToA1Tag,
                               cmsSigBToA2Tag,
                               cicpTag};

bool copyTag(const Profile& from, const Profile& to, cmsTagSignature tag) {
  if (!cmsIsTag(from.get(), tag)) return false;
  std::string data(cmsReadRawTag(from.get(), tag, nullptr, 0), '\0');
  const auto length = cmsReadRawTag(from.get(), tag, data.data(), static_cast<cmsUInt32Number>(data.size()));
  return length > 0 && cmsWriteRawTag(to.get(), tag, data.data(), length);
}

std::string bytesOf(const Profile& profile) {
  cmsUInt32Number length = 0;
  if (!cmsSaveProfileToMem(profile.get(), nullptr, &length)) return {};
  std::string bytes(length, '\0');
  if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &length)) return {};
  constexpr std::ptrdiff_t dateOffset = 24;
  constexpr std::ptrdiff_t dateBytes = 12;
  std::fill_n(bytes.begin() + dateOffset, dateBytes, '\0');  // lcms2 puts the time of this device there
  return bytes;
}

}  // namespace

std::string plainProfile(std::string_view profile, cmsColorSpaceSignature colors) {
  if (profile.size() > maximumBytes) return {};
  const Profile whole(cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
  if (!whole || cmsGetColorSpace(whole.get()) != colors) return {};

  const Profile plain(cmsCreateProfilePlaceholder(nullptr));
  cmsSetEncodedICCversion(plain.get(), cmsGetEncodedICCversion(whole.get()));
  cmsSetDeviceClass(plain.get(), cmsGetDeviceClass(whole.get()));
  cmsSetColorSpace(plain.get(), colors);
  cmsSetPCS(plain.get(), cmsGetPCS(whole.get()));
  cmsSetHeaderRenderingIntent(plain.get(), cmsGetHeaderRenderingIntent(whole.get()));
  std::size_t copied = 0;
  for (const auto tag : colorTags) copied += copyTag(whole, plain, tag) ? 1 : 0;
  return copied > 0 ? bytesOf(plain) : std::string();
}

}  // namespace orivex::gtk
