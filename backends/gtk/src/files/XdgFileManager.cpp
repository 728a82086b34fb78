#include "XdgFileManager.h"

#include <cerrno>
#include <cstring>

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

}  // namespace orivex::gtk
