#include "TurboJpeg.h"

#include <algorithm>
#include <cmath>

namespace orivex::gtk {
namespace {

// From here on, the halved resolution of colours is the first loss that is seen, at the edges of red text.
constexpr double fullColorQuality = 0.9;

// libturbojpeg begins every JPEG with its first marker and a JFIF segment; a profile comes after them.
constexpr std::size_t profileOffset = 20;
constexpr std::size_t mostOfSegment = 65519;

}  // namespace

std::string TurboBuffer::withProfile(std::string_view profile) const {
  const std::string_view jpeg(reinterpret_cast<const char*>(bytes), length);
  const auto segments = (profile.size() + mostOfSegment - 1) / mostOfSegment;
  std::string all(jpeg.substr(0, profileOffset));
  all.reserve(jpeg.size() + profile.size() + segments * 18);
  for (std::size_t number = 1; number <= segments; ++number) {
    const auto part = profile.substr((number - 1) * mostOfSegment, mostOfSegment);
    const auto segmentBytes = part.size() + 16;
    all.append("\xFF\xE2").append({static_cast<char>(segmentBytes >> 8U), static_cast<char>(segmentBytes & 0xFFU)});
    all.append("ICC_PROFILE").append({'\0', static_cast<char>(number), static_cast<char>(segments)}).append(part);
  }
  return all.append(jpeg.substr(profileOffset));
}

int turboQuality(double quality) {
  return std::clamp(static_cast<int>(std::lround(quality * 100)), 1, 100);
}

std::variant<JpegImage, Failure> encodePixels(const Pixels& pixels, double quality, std::string_view profile) {
  const TurboJpeg compressor(tjInitCompress());
  const auto subsampling = quality >= fullColorQuality ? TJSAMP_444 : TJSAMP_420;
  TurboBuffer jpeg(pixels.width, pixels.height, subsampling);
  if (tjCompress2(compressor.get(), pixels.bytes, pixels.width, pixels.rowBytes, pixels.height, pixels.format,
                  &jpeg.bytes, &jpeg.length, subsampling, turboQuality(quality), TJFLAG_ACCURATEDCT) != 0) {
    return Failure{tjGetErrorStr2(compressor.get())};
  }
  return JpegImage{jpeg.withProfile(profile), {static_cast<double>(pixels.width), static_cast<double>(pixels.height)}};
}

}  // namespace orivex::gtk
