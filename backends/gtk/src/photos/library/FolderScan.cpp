#include "FolderScan.h"

#include <filesystem>
#include <memory>
#include <utility>

#include <dirent.h>

#include "../../glib/GMemory.h"

namespace orivex::gtk {
namespace {

using FolderPtr = std::unique_ptr<DIR, FreeWith<closedir>>;

std::int64_t modified(const struct stat& facts) {
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  return facts.st_mtim.tv_sec * nanosecondsPerSecond + facts.st_mtim.tv_nsec;
}

// Whether the link leads to a folder that holds it.
bool leadsAround(const std::string& link) {
  std::error_code failure;
  const auto target = std::filesystem::canonical(link, failure);
  if (failure) return true;
  const auto place = std::filesystem::canonical(link.substr(0, link.rfind('/')), failure).string() + "/";
  return failure || place.starts_with(target == "/" ? "/" : target.string() + "/");
}

}  // namespace

void FolderScan::run(const std::vector<std::string>& roots) {
  for (const auto& root : roots) add(root);
  while (!visitor_.isStopped() && visitNext()) continue;
}

bool FolderScan::visitNext() {
  if (folders_.empty()) {
    for (auto& link : std::exchange(links_, {})) add(std::move(link));
  }
  if (folders_.empty()) return false;
  const std::string folder = folders_.top().second;
  folders_.pop();
  visit(folder);
  return true;
}

void FolderScan::add(std::string folder) {
  struct stat facts {};
  if (stat(folder.c_str(), &facts) == 0) folders_.emplace(modified(facts), std::move(folder));
}

void FolderScan::visit(const std::string& folder) {
  const FolderPtr open(opendir(folder.c_str()));
  struct stat facts {};
  if (!open || fstat(dirfd(open.get()), &facts) != 0) return;
  if (!visited_.emplace(facts.st_dev, facts.st_ino).second) return;
  if (!visitor_.foundFolder(folder, modified(facts))) return;
  while (const dirent* const next = readdir(open.get())) {
    if (visitor_.isStopped()) return;
    entry(dirfd(open.get()), folder, next->d_name, next->d_type);
  }
}

void FolderScan::entry(int folderDescriptor, const std::string& folder, const char* name, unsigned char kind) {
  if (name[0] == '.') return;
  const auto type = mediaTypeOf(name, filter_);
  // Most of what lies around needs no look: names tell files apart, and most file systems tell which are folders.
  if (!type && kind == DT_REG) return;
  std::string path = folder + "/" + name;
  if (kind == DT_DIR) return add(std::move(path));
  struct stat facts {};
  if (fstatat(folderDescriptor, name, &facts, 0) != 0) return;
  if (S_ISDIR(facts.st_mode)) {
    std::error_code failure;
    const bool isLink = kind == DT_LNK || std::filesystem::is_symlink(path, failure);
    if (!isLink) return add(std::move(path));
    if (!leadsAround(path)) links_.push_back(std::move(path));
  } else if (type && S_ISREG(facts.st_mode)) {
    visitor_.foundItem({std::move(path), *type, modified(facts), facts.st_size});
  }
}

std::optional<MediaItem> FolderScan::itemAt(const std::string& path, const MediaFilter& filter) {
  const auto type = mediaTypeOf(nameOf(path), filter);
  struct stat facts {};
  if (!type || stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
  return MediaItem{path, *type, modified(facts), facts.st_size};
}

}  // namespace orivex::gtk
