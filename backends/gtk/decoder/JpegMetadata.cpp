#include "JpegMetadata.h"

#include <map>
#include <memory>

#include <libexif/exif-data.h>

#include "FreeWith.h"

namespace orivex::gtk {
namespace {

using namespace std::string_view_literals;
using ExifDataPtr = std::unique_ptr<ExifData, FreeWith<exif_data_unref>>;

constexpr unsigned char exifSegment = 0xE1;
constexpr unsigned char profileSegment = 0xE2;
constexpr unsigned char startOfScan = 0xDA;

unsigned char byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

// Calls `visit` with marker and content of each segment before the picture: libturbojpeg hands out none, and gdk-pixbuf
// loses the profile of a photo with a second picture in it.
template <class Visit>
void eachSegment(std::string_view jpeg, const Visit& visit) {
  constexpr std::size_t headBytes = 4;
  for (jpeg.remove_prefix(2); jpeg.size() >= headBytes && byteAt(jpeg, 0) == 0xFF;) {
    const auto marker = byteAt(jpeg, 1);
    const auto length = static_cast<std::size_t>(byteAt(jpeg, 2) << 8U | byteAt(jpeg, 3)) + 2;
    if (marker == 0xFF) {  // a byte of padding
      jpeg.remove_prefix(1);
      continue;
    }
    if (marker == startOfScan || length < headBytes || length > jpeg.size()) return;
    visit(marker, jpeg.substr(headBytes, length - headBytes));
    jpeg.remove_prefix(length);
  }
}

int orientationOf(std::string_view exif) {
  const ExifDataPtr data(
      exif_data_new_from_data(reinterpret_cast<const unsigned char*>(exif.data()), static_cast<unsigned>(exif.size())));
  if (!data) return 1;
  const auto* const entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
  if (!entry || entry->format != EXIF_FORMAT_SHORT || entry->size < 2) return 1;
  return exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
}

}  // namespace

JpegMetadata JpegMetadata::of(std::string_view jpeg) {
  constexpr auto exifName = "Exif\0\0"sv;
  constexpr auto profileName = "ICC_PROFILE\0"sv;
  constexpr std::size_t profileHead = profileName.size() + 2;  // with the number of the part and that of all
  JpegMetadata metadata;
  std::map<unsigned char, std::string_view> parts;
  eachSegment(jpeg, [&](unsigned char marker, std::string_view content) {
    if (marker == exifSegment && content.starts_with(exifName) && metadata.orientation == 1) {
      metadata.orientation = orientationOf(content);
    } else if (marker == profileSegment && content.starts_with(profileName) && content.size() > profileHead) {
      parts.emplace(byteAt(content, profileName.size()), content.substr(profileHead));
    }
  });
  for (const auto& [number, part] : parts) metadata.profile += part;
  return metadata;
}

}  // namespace orivex::gtk
