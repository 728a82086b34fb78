#include "XdgFileManager.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include <glib.h>
#include <unistd.h>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr int ownerOnly = 0700;

bool isUsable(const char* folder) {
  return g_file_test(folder, G_FILE_TEST_IS_DIR) && ::access(folder, W_OK | X_OK) == 0;
}

// Where the home folder stands in for it, the visitor has no folder for documents.
bool isDocumentsFolder(const char* folder) {
  return folder && std::string_view(folder) != g_get_home_dir() && isUsable(folder);
}

}  // namespace

std::optional<Url> XdgFileManager::documentDirectory() {
  const char* const documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
  if (isDocumentsFolder(documents)) return Url::fromFilePath(documents);
  const GCharPtr data(g_build_filename(g_get_user_data_dir(), applicationId_.c_str(), nullptr));
  if (g_mkdir_with_parents(data.get(), ownerOnly) == 0 && isUsable(data.get())) return Url::fromFilePath(data.get());
  return Url::fromFilePath(g_get_tmp_dir());
}

std::optional<Failure> XdgFileManager::removeItem(const Url& file) {
  const auto path = file.filePath();
  if (!path) return Failure{"not a file: " + file.absoluteString()};
  if (::unlink(path->c_str()) != 0) return Failure{std::strerror(errno)};
  return std::nullopt;
}

}  // namespace orivex::gtk
