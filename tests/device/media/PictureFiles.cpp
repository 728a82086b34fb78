#include "PictureFiles.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <gtk/gtk.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

/// Numbers of a file's header in either byte order.
class HeaderWriter {
 public:
  explicit HeaderWriter(bool littleEndian = false) : littleEndian_(littleEndian) {}
  HeaderWriter& number(std::uint64_t value, unsigned size) {
    for (unsigned index = 0; index < size; ++index) {
      const unsigned shift = 8 * (littleEndian_ ? index : size - 1 - index);
      bytes_.push_back(static_cast<char>(value >> shift & 0xFFU));
    }
    return *this;
  }
  HeaderWriter& text(std::string_view text) {
    bytes_ += text;
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  bool littleEndian_;
  std::string bytes_;
};

}  // namespace

JpegMarker exifMarker(int orientation, bool littleEndian) {
  constexpr unsigned shortType = 3;
  constexpr unsigned textType = 2;
  HeaderWriter tiff(littleEndian);
  tiff.text(littleEndian ? "II" : "MM").number(42, 2).number(8, 4).number(2, 2);
  tiff.number(0x010E, 2).number(textType, 2).number(7, 4).number(38, 4);
  tiff.number(0x0112, 2).number(shortType, 2).number(1, 4).number(static_cast<unsigned>(orientation), 2).number(0, 2);
  tiff.number(0, 4).text(std::string_view("SECRET\0", 7));
  return {0xE1, std::string("Exif\0\0", 6) + tiff.bytes()};
}

std::string colorProfileWithSecrets() {
  const std::string xyz =
      HeaderWriter().text("XYZ ").number(0, 4).number(0x6FA2, 4).number(0x38F5, 4).number(0x390, 4).bytes();
  const std::string curve =
      HeaderWriter().text("curv").number(0, 4).number(1, 4).number(0x0233, 2).number(0, 2).bytes();
  const std::string secret = HeaderWriter().text("text").number(0, 4).text("SECRET").number(0, 2).bytes();
  const std::vector<std::pair<const char*, std::string>> tags{{"desc", secret}, {"rXYZ", xyz},   {"gXYZ", xyz},
                                                              {"bXYZ", xyz},    {"rTRC", curve}, {"gTRC", curve},
                                                              {"bTRC", curve},  {"priv", secret}};
  HeaderWriter table;
  std::string data;
  table.number(static_cast<unsigned>(tags.size()), 4);
  for (const auto& [name, bytes] : tags) {
    table.text(name).number(static_cast<unsigned>(128 + 4 + tags.size() * 12 + data.size()), 4);
    table.number(static_cast<unsigned>(bytes.size()), 4);
    data += bytes;
  }
  const auto total = static_cast<unsigned>(128 + table.bytes().size() + data.size());
  HeaderWriter header;
  header.number(total, 4).text("SECR").number(0x02100000, 4).text("mntrRGB XYZ ").text(std::string(12, '\x01'));
  header.text("acsp").text(std::string(28, '\0'));
  header.number(0xF6D6, 4).number(0x10000, 4).number(0xD32D, 4).text(std::string(48, '\0'));  // daylight as white
  return header.bytes() + table.bytes() + data;
}

std::optional<std::string> savedPicture(const RgbImage& image, const char* format, int alpha,
                                        const SaveOptions& options) {
  const auto width = static_cast<int>(image.width);
  const auto height = static_cast<int>(image.height);
  const bool hasAlpha = alpha != 255;
  const auto pixbuf = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, hasAlpha, 8, width, height));
  for (int y = 0; y < height; ++y) {
    const auto* from = image.row(static_cast<unsigned>(y));
    auto* out = gdk_pixbuf_get_pixels(pixbuf.get()) + std::ptrdiff_t{y} * gdk_pixbuf_get_rowstride(pixbuf.get());
    for (int x = 0; x < width; ++x) {
      out = std::copy_n(from, 3, out);
      from += 3;
      if (hasAlpha) *out++ = static_cast<guchar>(alpha);
    }
  }
  std::vector<char*> keys;
  std::vector<char*> values;
  for (const auto& [key, value] : options) {
    keys.push_back(const_cast<char*>(key.c_str()));
    values.push_back(const_cast<char*>(value.c_str()));
  }
  keys.push_back(nullptr);
  values.push_back(nullptr);
  gchar* bytes = nullptr;
  gsize size = 0;
  if (!gdk_pixbuf_save_to_bufferv(pixbuf.get(), &bytes, &size, format, keys.data(), values.data(), nullptr)) {
    return std::nullopt;
  }
  const GCharPtr owned(bytes);
  return std::string(bytes, size);
}

std::string movingGif() {
  constexpr std::string_view frame("\x21\xF9\x04\x04\x0A\0\0\0\x2C\0\0\0\0\x01\0\x01\0\0\x02\x02", 20);
  std::string gif("GIF89a\x01\0\x01\0\x81\0\0", 13);
  gif += std::string("\xFF\0\0\0\0\xFF\0\0\0\0\0\0", 12);
  gif += std::string(frame) + std::string("\x44\x01\0", 3);
  gif += std::string(frame) + std::string("\x4C\x01\0", 3);
  return gif + ";";
}

std::string withClaimedSize(std::string jpeg, unsigned width, unsigned height) {
  std::size_t offset = 2;
  while ((static_cast<unsigned char>(jpeg.at(offset + 1)) | 2U) != 0xC2) {
    offset += 2 + static_cast<unsigned char>(jpeg.at(offset + 2)) * std::size_t{256} +
              static_cast<unsigned char>(jpeg.at(offset + 3));
  }
  return jpeg.replace(offset + 5, 4, HeaderWriter().number(height, 2).number(width, 2).bytes());
}

bool isNear(const RgbColor& one, const RgbColor& other, int tolerance) {
  return std::equal(one.begin(), one.end(), other.begin(),
                    [&](int left, int right) { return std::abs(left - right) <= tolerance; });
}

}  // namespace orivex::gtk
