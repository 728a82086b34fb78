#include "RowEncoder.h"

#include "JpegTarget.h"

namespace orivex::gtk {
namespace {

// From here on, the halved resolution of colours is the first loss that is seen, at the edges of red text.
constexpr double fullColorQuality = 0.9;

void keepColorResolution(jpeg_compress_struct& info) {
  info.comp_info[0].h_samp_factor = 1;
  info.comp_info[0].v_samp_factor = 1;
}

}  // namespace

std::variant<JpegImage, Failure> encodeRows(unsigned width, unsigned height, const RgbRow& row, double quality,
                                            std::string_view profile) {
  JpegErrors errors;
  JpegTarget target(errors);
  const bool written = errors.run([&] {
    target.prepare(width, height, JCS_RGB, quality);
    if (quality >= fullColorQuality) keepColorResolution(target.info());
    target.start(profile);
    for (unsigned y = 0; y < height; ++y) {
      auto* samples = const_cast<JSAMPROW>(row(y));  // libjpeg only reads it
      jpeg_write_scanlines(&target.info(), &samples, 1);
    }
    jpeg_finish_compress(&target.info());
  });
  if (!written) return Failure{errors.message()};
  return JpegImage{target.takeBytes(), {static_cast<double>(width), static_cast<double>(height)}};
}

}  // namespace orivex::gtk
