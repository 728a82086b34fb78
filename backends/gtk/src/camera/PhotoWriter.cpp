#include "PhotoWriter.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"
#include "../video/MappedFrame.h"

namespace orivex::gtk {
namespace {

// High enough that the picture can be compressed once more before it is sent.
constexpr const char* quality = "92";

// One picture takes a hundredth of this.
constexpr GstClockTime longestConversion = 10 * GST_SECOND;

Failure failureOf(GError* raised) {
  const GErrorPtr error(raised);
  return Failure{error ? error->message : "the frame cannot be read"};
}

}  // namespace

std::optional<Failure> writePhoto(const SharedSample& frame, const std::string& path) {
  const GstCapsPtr rgb(gst_caps_from_string("video/x-raw,format=RGB"));
  GError* error = nullptr;
  const MappedFrame picture(adoptSample(gst_video_convert_sample(frame.get(), rgb.get(), longestConversion, &error)));
  if (!picture) return failureOf(error);
  const auto pixels =
      GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_data(picture.pixels(), GDK_COLORSPACE_RGB, FALSE, 8, picture.width(),
                                                      picture.height(), picture.stride(), nullptr, nullptr));
  if (!gdk_pixbuf_save(pixels.get(), path.c_str(), "jpeg", &error, "quality", quality, nullptr))
    return failureOf(error);
  return std::nullopt;
}

}  // namespace orivex::gtk
