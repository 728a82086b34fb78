#include "PlainJpeg.h"

#include <cmath>
#include <cstdlib>
#include <random>

namespace orivex::gtk {
namespace {

// The usual files with four inks hold them inverted, so that red, green and blue stand there as they are, with no key.
std::vector<JSAMPLE> inkRow(const std::uint8_t* rgb, unsigned width) {
  std::vector<JSAMPLE> inks;
  for (unsigned x = 0; x < width; ++x, rgb += 3) inks.insert(inks.end(), {rgb[0], rgb[1], rgb[2], 255});
  return inks;
}

void writeRows(jpeg_compress_struct& info, const RgbImage& image) {
  for (unsigned y = 0; y < image.height; ++y) {
    auto* row = const_cast<JSAMPROW>(image.row(y));
    std::vector<JSAMPLE> inks;
    if (info.input_components == 4) {
      inks = inkRow(row, image.width);
      row = inks.data();
    }
    jpeg_write_scanlines(&info, &row, 1);
  }
}

}  // namespace

double psnr(const RgbImage& one, const RgbImage& other) {
  double sum = 0;
  for (std::size_t index = 0; index < one.samples.size(); ++index) {
    const double difference = int{one.samples[index]} - int{other.samples[index]};
    sum += difference * difference;
  }
  if (sum == 0) return 99;
  return 10 * std::log10(255.0 * 255.0 * static_cast<double>(one.samples.size()) / sum);
}

RgbImage quarters(unsigned width, unsigned height) {
  constexpr std::array<RgbColor, 4> colors{{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}}};
  RgbImage image{width, height};
  for (unsigned y = 0; y < height; ++y) {
    auto* out = image.row(y);
    for (unsigned x = 0; x < width; ++x) {
      for (const int sample : colors[(y < height / 2 ? 0U : 2U) + (x < width / 2 ? 0U : 1U)]) {
        *out++ = static_cast<std::uint8_t>(sample);
      }
    }
  }
  return image;
}

RgbImage wavyPicture(unsigned width, unsigned height, unsigned seed) {
  std::mt19937 noise(seed);
  RgbImage image{width, height};
  for (std::size_t index = 0; index < image.samples.size(); ++index) {
    const auto x = static_cast<double>(index / 3 % width);
    const std::size_t row = index / 3 / width;
    const auto y = static_cast<double>(row);
    const double wave = 50 * std::sin(x / (9 + seed)) * std::cos(y / (13 + 4.0 * static_cast<double>(index % 3)));
    const double edge = std::hypot(x - width / 2.0, y - height / 2.0) < height / 3.0 ? 40 : -30;
    image.samples[index] = static_cast<std::uint8_t>(120 + wave + edge + static_cast<double>(noise() % 9));
  }
  return image;
}

std::string encodePlainJpeg(const RgbImage& image, const PlainJpegOptions& options) {
  jpeg_error_mgr errors;
  jpeg_compress_struct info{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &bytes, &size);
  info.image_width = image.width;
  info.image_height = image.height;
  const bool hasInks = options.colors == JCS_CMYK || options.colors == JCS_YCCK;
  info.input_components = hasInks ? 4 : 3;
  info.in_color_space = hasInks ? JCS_CMYK : JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, options.quality, TRUE);
  jpeg_set_colorspace(&info, options.colors);
  if (options.colors == JCS_YCbCr) {
    info.comp_info[0].h_samp_factor = options.lumaAcross;
    info.comp_info[0].v_samp_factor = options.lumaDown;
  }
  if (options.progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  for (const auto& marker : options.markers) {
    jpeg_write_marker(&info, marker.code, reinterpret_cast<const JOCTET*>(marker.payload.data()),
                      static_cast<unsigned>(marker.payload.size()));
  }
  writeRows(info, image);
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  std::string result(reinterpret_cast<const char*>(bytes), size);
  std::free(bytes);  // NOLINT(cppcoreguidelines-no-malloc): libjpeg's own
  return result;
}

RgbImage decodePlainJpeg(std::string_view bytes) {
  jpeg_error_mgr errors;
  jpeg_decompress_struct info{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_RGB;
  jpeg_start_decompress(&info);
  RgbImage image{info.output_width, info.output_height};
  while (info.output_scanline < info.output_height) {
    auto* row = image.row(info.output_scanline);
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
  return image;
}

std::vector<JpegMarker> markersOf(std::string_view bytes) {
  constexpr int startOfScan = 0xDA;
  const auto byte = [&](std::size_t offset) { return static_cast<unsigned char>(bytes.at(offset)); };
  std::vector<JpegMarker> markers;
  std::size_t offset = 2;
  while (byte(offset + 1) != startOfScan) {
    const std::size_t length = byte(offset + 2) * std::size_t{256} + byte(offset + 3);
    markers.push_back({byte(offset + 1), std::string(bytes.substr(offset + 4, length - 2))});
    offset += 2 + length;
  }
  return markers;
}

}  // namespace orivex::gtk
