#include "MediaReader.h"

#include <memory>
#include <utility>

#include "../../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

GRef<GdkPixbuf> pictureOf(Decoded decoded) {
  const auto [facts, length] = std::pair(decoded.facts, decoded.bytes.size());
  auto pixels = std::make_unique<std::string>(std::move(decoded.bytes));
  const auto* const data = pixels->data();
  const GBytesPtr bytes(g_bytes_new_with_free_func(
      data, length, [](gpointer owned) { delete static_cast<std::string*>(owned); }, pixels.release()));
  const int width = static_cast<int>(facts.width);
  const int channels = static_cast<int>(facts.channels);
  return GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_bytes(bytes.get(), GDK_COLORSPACE_RGB, channels == 4, 8, width,
                                                          static_cast<int>(facts.height), width * channels));
}

std::optional<Thumbnail> read(const Decoder& decoder, const MediaItem& item, int width, int height) {
  const bool isVideo = item.type == MediaType::video;
  auto result = decoder.decode({.kind = isVideo ? Decoding::frame : Decoding::picture,
                                .width = static_cast<std::uint32_t>(width),
                                .height = static_cast<std::uint32_t>(height)},
                               item.path);
  if (const auto* const failure = std::get_if<Failure>(&result)) {
    log::print(item.path + " cannot be shown: " + failure->description);
    return std::nullopt;
  }
  auto& decoded = std::get<Decoded>(result);
  const auto duration = isVideo ? std::optional(decoded.facts.duration) : std::nullopt;
  return Thumbnail{pictureOf(std::move(decoded)), duration};
}

}  // namespace

MediaReader mediaReader(const Decoder& decoder) {
  return [&decoder](const MediaItem& item, int width, int height) { return read(decoder, item, width, height); };
}

}  // namespace orivex::gtk
