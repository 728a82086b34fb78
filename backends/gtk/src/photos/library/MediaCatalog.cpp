#include "MediaCatalog.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>

#include <unistd.h>

#include "MediaTexts.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr const char* everything = trLater("最近项目");

std::string albumName(const std::string& folder, const std::vector<MediaRoot>& roots) {
  const auto root = std::find_if(roots.begin(), roots.end(), [&](const auto& known) { return known.path == folder; });
  return root == roots.end() ? displayName(folder) : root->name;
}

// Newest first; files of one moment by path, so that the order never wavers.
bool isShownBefore(const MediaItemPtr& one, const MediaItemPtr& other) {
  return one->modified != other->modified ? one->modified > other->modified : one->path < other->path;
}

void disambiguateNames(std::vector<Album>& albums) {
  std::map<std::string, int> uses;
  for (const auto& album : albums) ++uses[album.name];
  for (auto& album : albums) {
    if (uses[album.name] > 1 && !album.folder.empty()) {
      album.name = displayName(folderOf(album.folder)) + "/" + album.name;
    }
  }
}

}  // namespace

bool isReadable(const MediaRoot& root) {
  return access(root.path.c_str(), R_OK | X_OK) == 0;
}

MediaCatalog::MediaCatalog(MediaItems items, const std::vector<MediaRoot>& roots, bool isComplete)
    : isComplete_(isComplete) {
  auto all = std::make_shared<MediaItems>(std::move(items));
  std::sort(all->begin(), all->end(), isShownBefore);

  // In this order the first item of a folder that comes by is its newest, which puts the albums in order too.
  std::vector<std::pair<std::string_view, std::shared_ptr<MediaItems>>> folders;
  std::unordered_map<std::string_view, MediaItems*> itemsOf;
  for (const auto& item : *all) {
    auto& known = itemsOf[folderOf(item->path)];
    if (!known) known = folders.emplace_back(folderOf(item->path), std::make_shared<MediaItems>()).second.get();
    known->push_back(item);
  }

  albums_.push_back({tr(everything), "", std::move(all)});
  for (auto& [folder, inside] : folders) {
    const std::string path(folder);
    albums_.push_back({albumName(path, roots), path, std::move(inside)});
  }
  disambiguateNames(albums_);
}

}  // namespace orivex::gtk
