#include "PictureCodec.h"

#include <utility>

namespace orivex::gtk {

std::variant<JpegImage, Failure> PictureCodec::jpeg(const std::string& path, double quality) const {
  auto result = decoder_.decode({.kind = Decoding::recode, .quality = quality}, path);
  if (const auto* const failure = std::get_if<Failure>(&result)) {
    return Failure{path + " cannot be shown: " + failure->description};
  }
  auto& [facts, bytes] = std::get<Decoded>(result);
  return JpegImage{std::move(bytes), {static_cast<double>(facts.width), static_cast<double>(facts.height)}};
}

}  // namespace orivex::gtk
