#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <variant>

#include "Expect.h"
#include "backends/gtk/decoder/ColorProfile.h"
#include "backends/gtk/decoder/JpegMetadata.h"
#include "backends/gtk/decoder/PictureReading.h"
#include "pictures/RegularFile.h"

namespace orivex::gtk {
namespace {

using fuzz::expect;

FilePtr fileOf(std::string_view bytes) {
  return FilePtr(fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "rb"));
}

void readProfile(std::string_view bytes) {
  for (const auto colors : {cmsSigRgbData, cmsSigGrayData}) {
    const auto plain = plainProfile(bytes, colors);
    expect(plain.empty() || !plainProfile(plain, colors).empty(), "a profile that was written can be read");
  }
}

void readSmall(std::string_view bytes) {
  constexpr int most = 64;
  const auto read = readPicture(fileOf(bytes).get(), {most, most});
  const auto* const picture = std::get_if<GRef<GdkPixbuf>>(&read);
  if (!picture || !*picture) return;
  const int width = gdk_pixbuf_get_width(picture->get());
  const int height = gdk_pixbuf_get_height(picture->get());
  expect(width > 0 && height > 0 && width <= most && height <= most, "a picture has the size that was asked for");
}

void recode(std::string_view bytes) {
  const auto recoded = recodePicture(fileOf(bytes).get(), 0.7);
  const auto* const image = std::get_if<JpegImage>(&recoded);
  if (!image) return;
  expect(JpegMetadata::of(image->bytes).orientation == 1, "a picture that was encoded is upright");
  constexpr int any = 1 << 20;
  const auto again = readPicture(fileOf(image->bytes).get(), {any, any});
  const auto* const picture = std::get_if<GRef<GdkPixbuf>>(&again);
  expect(picture && gdk_pixbuf_get_width(picture->get()) == static_cast<int>(image->size.width) &&
             gdk_pixbuf_get_height(picture->get()) == static_cast<int>(image->size.height),
         "a picture that was encoded can be seen in its size");
}

}  // namespace
}  // namespace orivex::gtk

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const GLogWriterFunc silence = [](auto...) { return G_LOG_WRITER_HANDLED; };
  static const bool isQuiet = (g_log_set_writer_func(silence, nullptr, nullptr), true);
  const std::string_view bytes(reinterpret_cast<const char*>(data), isQuiet ? size : 0);
  orivex::gtk::readProfile(bytes);
  orivex::gtk::readSmall(bytes);
  orivex::gtk::recode(bytes);
  return 0;
}
