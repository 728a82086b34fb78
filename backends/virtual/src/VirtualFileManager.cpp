#include "orivex/testing/VirtualFileManager.h"

#include "ThreadCheck.h"

namespace orivex::testing {

std::optional<Url> VirtualFileManager::documentDirectory() {
  requireMainThread(queue_, "FileManager::documentDirectory");
  return documentDirectory_ ? std::optional(Url::fromFilePath(*documentDirectory_)) : std::nullopt;
}

std::optional<Failure> VirtualFileManager::removeItem(const Url& file) {
  requireMainThread(queue_, "FileManager::removeItem");
  if (!removalFailure_.empty()) return Failure{removalFailure_};
  const auto path = file.filePath();
  if (!path) return Failure{"not a file"};
  removed_.push_back(*path);
  return std::nullopt;
}

}  // namespace orivex::testing
