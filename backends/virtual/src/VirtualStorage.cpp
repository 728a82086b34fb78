#include "orivex/testing/VirtualStorage.h"

#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {

bool VirtualUserDefaults::boolForKey(std::string_view key) const {
  requireMainThread(queue_, "UserDefaults::boolForKey");
  const auto found = values_.find(key);
  if (found == values_.end()) return false;
  const bool* value = std::get_if<bool>(&found->second);
  return value && *value;
}

std::optional<std::string> VirtualUserDefaults::stringForKey(std::string_view key) const {
  requireMainThread(queue_, "UserDefaults::stringForKey");
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  const auto* value = std::get_if<std::string>(&found->second);
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::string> VirtualDeviceIdentity::identifierForVendor() const {
  requireMainThread(queue_, "Device::identifierForVendor");
  return identifier_;
}

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

void VirtualWebsiteDataStore::fetchRecords(Once<void(std::variant<Records, Failure>)> completion) {
  requireMainThread(queue_, "WebsiteDataStore::fetchRecords");
  Records records;
  for (const auto& site : sites_) records.push_back({site, nullptr});
  queue_.async([failure = failure_, records = std::move(records), completion = std::move(completion)]() mutable {
    if (failure) return std::move(completion)(*std::move(failure));
    std::move(completion)(std::move(records));
  });
}

void VirtualWebsiteDataStore::removeData(const Records& records, Once<void(std::optional<Failure>)> completion) {
  requireMainThread(queue_, "WebsiteDataStore::removeData");
  for (const auto& record : failure_ ? Records() : records) sites_.erase(record.displayName);
  queue_.async([failure = failure_, completion = std::move(completion)]() mutable {
    std::move(completion)(std::move(failure));
  });
}

}  // namespace orivex::testing
