#include "CaptureFile.h"

#include <cerrno>

#include <fcntl.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <glib/gstdio.h>
#include <unistd.h>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"

namespace orivex::gtk {
namespace {

constexpr int ownerOnlyFolder = 0700;
constexpr int ownerOnlyFile = 0600;

// High enough that the picture can be compressed once more before it is sent.
constexpr const char* quality = "92";

// One picture takes a hundredth of this.
constexpr GstClockTime longestConversion = 10 * GST_SECOND;

std::string timeOfDay() {
  const std::unique_ptr<GDateTime, FreeWith<g_date_time_unref>> now(g_date_time_new_now_local());
  const GCharPtr text(g_date_time_format(now.get(), "%Y%m%d-%H%M%S"));
  return text.get();
}

Failure adoptFailure(GError* raised) {
  const GErrorPtr error(raised);
  return Failure{error ? error->message : "the frame cannot be read"};
}

}  // namespace

// The user's runtime folder goes with the login, and with it whatever a crash has left there.
std::string captureFolder() {
  return std::string(g_get_user_runtime_dir()) + "/orivex-camera";
}

std::variant<std::shared_ptr<CaptureFile>, Failure> CaptureFile::make(MediaType type, const char* suffix) {
  const auto folder = captureFolder();
  if (g_mkdir_with_parents(folder.c_str(), ownerOnlyFolder) != 0) return Failure{g_strerror(errno)};
  auto path = folder + (type == MediaType::image ? "/photo-" : "/video-") + timeOfDay() + "-XXXXXX" + suffix;
  const int descriptor = g_mkstemp_full(path.data(), O_RDWR | O_CLOEXEC, ownerOnlyFile);
  if (descriptor < 0) return Failure{g_strerror(errno)};
  close(descriptor);
  return std::make_shared<CaptureFile>(type, path);
}

std::variant<std::shared_ptr<CaptureFile>, Failure> CaptureFile::makePhoto(const SharedSample& frame) {
  const GstCapsPtr rgb(gst_caps_from_string("video/x-raw,format=RGB"));
  GError* error = nullptr;
  const MappedFrame picture(adoptSample(gst_video_convert_sample(frame.get(), rgb.get(), longestConversion, &error)));
  if (!picture) return adoptFailure(error);
  const auto pixels =
      GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_data(picture.pixels(), GDK_COLORSPACE_RGB, FALSE, 8, picture.width(),
                                                      picture.height(), picture.stride(), nullptr, nullptr));
  auto made = make(MediaType::image, ".jpg");
  const auto* const file = std::get_if<std::shared_ptr<CaptureFile>>(&made);
  if (!file) return made;
  const char* const path = (*file)->path().c_str();
  if (!gdk_pixbuf_save(pixels.get(), path, "jpeg", &error, "quality", quality, nullptr)) return adoptFailure(error);
  return made;
}

CaptureFile::~CaptureFile() {
  if (owned_) g_unlink(path_.c_str());
}

PickedMedia CaptureFile::release() {
  owned_ = false;
  return {type_, Url::fromFilePath(path_)};
}

}  // namespace orivex::gtk
