#include "NamedLinks.h"

#include <system_error>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Text.h"

namespace orivex::gtk {

NamedLinks::~NamedLinks() {
  std::error_code ignored;
  for (const auto& folder : folders_) std::filesystem::remove_all(folder, ignored);
}

std::string NamedLinks::textPath(const std::string& path) {
  if (isValidUtf8(path)) return path;
  const GCharPtr folder(g_dir_make_tmp("orivex-XXXXXX", nullptr));  // one for each: two files may get the same name
  if (!folder) return path;
  folders_.emplace_back(folder.get());
  const auto link = folders_.back() / validUtf8(std::filesystem::path(path).filename().string());
  std::error_code error;
  std::filesystem::create_symlink(path, link, error);
  return error ? path : link.string();
}

}  // namespace orivex::gtk
