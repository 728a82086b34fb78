#include "orivex/testing/VirtualBundle.h"

#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

#include "orivex/platform/base/Log.h"
#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {
namespace {

std::filesystem::path makeFolder() {
  std::string path = (std::filesystem::temp_directory_path() / "orivex-bundle-XXXXXX").string();
  if (!mkdtemp(path.data())) fatalError("OrivexSDK/VirtualBundle", "cannot make a temporary folder: " + path);
  return path;
}

std::string fileName(std::string_view name, std::string_view type) {
  return std::string(name) + '.' + std::string(type);
}

}  // namespace

VirtualBundle::VirtualBundle(const MainQueue& queue, InfoDictionary info)
    : queue_(queue), folder_(makeFolder()), info_(std::move(info)) {}

VirtualBundle::~VirtualBundle() {
  std::error_code ignored;  // a folder that a test took away itself is gone as well
  std::filesystem::remove_all(folder_, ignored);
}

const std::optional<InfoDictionary>& VirtualBundle::infoDictionary() const {
  static const std::optional<InfoDictionary> none;
  requireMainThread(queue_, "Bundle::infoDictionary");
  return missing_ ? none : info_;
}

std::optional<std::string> VirtualBundle::pathForResource(std::string_view name, std::string_view type) const {
  requireMainThread(queue_, "Bundle::pathForResource");
  const auto path = folder_ / fileName(name, type);
  if (missing_ || !std::filesystem::exists(path)) return std::nullopt;
  return path.string();
}

void VirtualBundle::setInfo(std::string_view key, std::optional<InfoValue> value) {
  if (!info_) info_.emplace();
  if (value) {
    info_->insert_or_assign(std::string(key), std::move(*value));
  } else {
    info_->erase(std::string(key));
  }
}

std::string VirtualBundle::addResource(std::string_view name, std::string_view type, std::string_view contents) {
  removeResource(name, type);
  const auto path = folder_ / fileName(name, type);
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << contents;
  file.close();
  if (!file) fatalError("OrivexSDK/VirtualBundle", "cannot write " + path.string());
  return path.string();
}

std::string VirtualBundle::addUnreadableResource(std::string_view name, std::string_view type) {
  removeResource(name, type);
  const auto path = folder_ / fileName(name, type);
  // A folder, because to a superuser every plain file is readable.
  std::filesystem::create_directory(path);
  return path.string();
}

void VirtualBundle::removeResource(std::string_view name, std::string_view type) {
  std::filesystem::remove_all(folder_ / fileName(name, type));
}

}  // namespace orivex::testing
