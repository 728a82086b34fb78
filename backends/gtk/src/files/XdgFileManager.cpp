#include "XdgFileManager.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <system_error>

#include <glib.h>
#include <unistd.h>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr int ownerOnly = 0700;

}  // namespace

std::optional<Url> XdgFileManager::documentDirectory() {
  const GCharPtr data(g_build_filename(g_get_user_data_dir(), "orivex-sdk", applicationId_.c_str(), nullptr));
  const bool isUsable = g_mkdir_with_parents(data.get(), ownerOnly) == 0 && ::access(data.get(), W_OK | X_OK) == 0;
  if (isUsable) return Url::fromFilePath(data.get());
  return Url::fromFilePath(g_get_tmp_dir());
}

std::optional<Failure> XdgFileManager::removeItem(const Url& file) {
  const auto path = file.filePath();
  if (!path) return Failure{"not a file: " + file.absoluteString()};
  if (::unlink(path->c_str()) != 0) return Failure{std::strerror(errno)};
  return std::nullopt;
}

void removeLeftOvers(const std::filesystem::path& folder, std::string_view ending) {
  std::error_code error;
  const auto oldest = std::filesystem::file_time_type::clock::now() - std::chrono::hours(24);
  std::filesystem::directory_iterator entry(folder, error);
  while (!error && entry != std::filesystem::directory_iterator()) {
    std::error_code gone;
    const bool isOld = entry->is_regular_file(gone) && !gone && entry->last_write_time(gone) < oldest && !gone;
    if (isOld && entry->path().string().ends_with(ending)) std::filesystem::remove(entry->path(), gone);
    entry.increment(error);
  }
}

}  // namespace orivex::gtk
