#include "JpegSource.h"

#include <cstdlib>
#include <memory>

#include <jerror.h>

#include "ColorProfile.h"

namespace orivex::gtk {
namespace {

constexpr int exifMarker = JPEG_APP0 + 1;
constexpr int profileMarker = JPEG_APP0 + 2;
constexpr unsigned wholeMarker = 0xFFFF;

// Encoders write about ten. A file of thousands of empty scans would keep a thread busy for minutes.
constexpr int maximumScans = 200;

}  // namespace

JpegSource::JpegSource(JpegErrors& errors) {
  info_.err = errors.manager();
  progress_.progress_monitor = countScans;
}

void JpegSource::readHeader(std::FILE* file) {
  jpeg_create_decompress(&info_);
  info_.progress = &progress_;
  jpeg_stdio_src(&info_, file);
  jpeg_save_markers(&info_, exifMarker, wholeMarker);
  jpeg_save_markers(&info_, profileMarker, wholeMarker);
  jpeg_read_header(&info_, TRUE);
}

void JpegSource::countScans(j_common_ptr info) {
  if (info->is_decompressor && reinterpret_cast<j_decompress_ptr>(info)->input_scan_number > maximumScans) {
    ERREXIT(info, JERR_BAD_PROGRESSION);
  }
}

std::uint64_t JpegSource::heldBytes() {
  if (!jpeg_has_multiple_scans(&info_)) return 0;
  std::uint64_t coefficients = 0;
  for (int index = 0; index < info_.num_components; ++index) {
    const auto& component = info_.comp_info[index];
    coefficients += std::uint64_t{component.width_in_blocks} * component.height_in_blocks * DCTSIZE2;
  }
  return coefficients * sizeof(JCOEF);
}

Turn JpegSource::turn() const {
  for (const auto* marker = info_.marker_list; marker; marker = marker->next) {
    if (marker->marker != exifMarker) continue;
    if (const auto turn = Turn::ofExif({marker->data, marker->data_length}); !turn.isNone()) return turn;
  }
  return {};
}

std::string JpegSource::colorProfile(JpegErrors& errors) {
  struct Free {
    void operator()(JOCTET* bytes) const { std::free(bytes); }  // NOLINT(cppcoreguidelines-no-malloc): libjpeg's own
  };
  JOCTET* bytes = nullptr;
  unsigned length = 0;
  const bool found = errors.run([&] {
    if (!jpeg_read_icc_profile(&info_, &bytes, &length)) length = 0;
  });
  const std::unique_ptr<JOCTET, Free> owned(bytes);
  if (!found || length == 0) return {};
  return colorsOfProfile({owned.get(), length}, info_.num_components == 1 ? "GRAY" : "RGB ");
}

}  // namespace orivex::gtk
