#include "pictures/PictureCodec.h"

#include <array>

#include "pictures/JpegRecoder.h"
#include "pictures/PixbufDecoder.h"
#include "pictures/PixbufEncoder.h"
#include "pictures/RegularFile.h"

namespace orivex::gtk {
namespace {

bool beginsAsJpeg(std::FILE* file) {
  constexpr std::array<unsigned char, 3> startOfImage{0xFF, 0xD8, 0xFF};
  std::array<unsigned char, startOfImage.size()> first{};
  const auto count = std::fread(first.data(), 1, first.size(), file);
  std::rewind(file);
  return count == first.size() && first == startOfImage;
}

std::variant<JpegImage, Failure> encode(std::FILE* file, double quality) {
  if (beginsAsJpeg(file)) {
    if (auto recoded = JpegRecoder(file, quality).recode()) return std::move(*recoded);
    std::rewind(file);
  }
  auto decoded = decodePixbuf(file);
  if (auto* const failure = std::get_if<Failure>(&decoded)) return std::move(*failure);
  return encodePixbuf(std::get<GRef<GdkPixbuf>>(decoded).get(), quality);
}

}  // namespace

std::variant<JpegImage, Failure> PictureCodec::jpeg(const std::string& path, double quality) const {
  auto opened = openRegularFile(path);
  if (auto* const failure = std::get_if<Failure>(&opened)) return std::move(*failure);
  auto result = encode(std::get<FilePtr>(opened).get(), quality);
  if (auto* const failure = std::get_if<Failure>(&result)) {
    failure->description = path + " cannot be shown: " + failure->description;
  }
  return result;
}

}  // namespace orivex::gtk
