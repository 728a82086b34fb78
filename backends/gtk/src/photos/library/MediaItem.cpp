#include "MediaItem.h"

#include <algorithm>
#include <array>
#include <string>

#include <glib.h>

namespace orivex::gtk {
namespace {

using namespace std::literals;

constexpr std::array imageEndings{"jpg"sv,  "jpeg"sv, "jpe"sv,  "jfif"sv, "png"sv, "gif"sv, "webp"sv,
                                  "heic"sv, "heif"sv, "avif"sv, "jxl"sv,  "bmp"sv, "tif"sv, "tiff"sv};
constexpr std::array videoEndings{"mp4"sv, "m4v"sv, "mov"sv,  "3gp"sv, "3g2"sv, "webm"sv, "mkv"sv, "avi"sv,
                                  "mpg"sv, "ogv"sv, "mpeg"sv, "mts"sv, "wmv"sv, "m2ts"sv, "flv"sv};

template <class Endings>
bool contains(const Endings& endings, std::string_view ending) {
  return std::find(endings.begin(), endings.end(), ending) != endings.end();
}

}  // namespace

std::optional<MediaType> mediaTypeOf(std::string_view fileName, const MediaFilter& filter) {
  const auto dot = fileName.rfind('.');
  if (fileName.starts_with('.') || dot == std::string_view::npos) return std::nullopt;
  std::string ending(fileName.substr(dot + 1));
  std::transform(ending.begin(), ending.end(), ending.begin(), g_ascii_tolower);
  if (contains(imageEndings, ending)) return filter.images ? std::optional(MediaType::image) : std::nullopt;
  if (contains(videoEndings, ending)) return filter.videos ? std::optional(MediaType::video) : std::nullopt;
  return std::nullopt;
}

}  // namespace orivex::gtk
