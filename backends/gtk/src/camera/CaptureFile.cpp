#include "CaptureFile.h"

#include <cerrno>

#include <fcntl.h>
#include <glib/gstdio.h>
#include <unistd.h>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr int ownerOnlyFolder = 0700;
constexpr int ownerOnlyFile = 0600;

std::string timeOfDay() {
  const std::unique_ptr<GDateTime, FreeWith<g_date_time_unref>> now(g_date_time_new_now_local());
  const GCharPtr text(g_date_time_format(now.get(), "%Y%m%d-%H%M%S"));
  return text.get();
}

}  // namespace

// The user's runtime folder goes with the login, and with it whatever a crash has left there.
std::string captureFolder() {
  return std::string(g_get_user_runtime_dir()) + "/orivex-camera";
}

std::variant<std::shared_ptr<CaptureFile>, Failure> CaptureFile::make(std::string_view kind, std::string_view suffix) {
  const auto folder = captureFolder();
  if (g_mkdir_with_parents(folder.c_str(), ownerOnlyFolder) != 0) return Failure{g_strerror(errno)};
  auto path = folder + "/" + std::string(kind) + "-" + timeOfDay() + "-XXXXXX" + std::string(suffix);
  const int descriptor = g_mkstemp_full(path.data(), O_RDWR | O_CLOEXEC, ownerOnlyFile);
  if (descriptor < 0) return Failure{g_strerror(errno)};
  close(descriptor);
  return std::make_shared<CaptureFile>(path);
}

CaptureFile::~CaptureFile() {
  if (owned_) g_unlink(path_.c_str());
}

Url CaptureFile::giveAway() {
  owned_ = false;
  return Url::fromFilePath(path_);
}

}  // namespace orivex::gtk
