#include "orivex/testing/VirtualWebsiteDataStore.h"

#include <algorithm>
#include <utility>

#include "ThreadCheck.h"

namespace orivex::testing {

void VirtualWebsiteDataStore::fetchRecords(const std::set<WebsiteDataType>& types,
                                           Once<void(std::variant<Records, Failure>)> completion) {
  requireMainThread(queue_, "WebsiteDataStore::fetchRecords");
  Records records;
  for (const auto& [site, stored] : sites_) {
    const bool wanted = std::any_of(stored.begin(), stored.end(), [&](auto type) { return types.contains(type); });
    if (wanted) records.push_back({site, nullptr});
  }
  queue_.async([failure = failure_, records = std::move(records), completion = std::move(completion)]() mutable {
    if (failure) return std::move(completion)(*std::move(failure));
    std::move(completion)(std::move(records));
  });
}

void VirtualWebsiteDataStore::removeData(const std::set<WebsiteDataType>& types, const Records& records,
                                         Once<void(std::optional<Failure>)> completion) {
  requireMainThread(queue_, "WebsiteDataStore::removeData");
  for (const auto& record : failure_ ? Records() : records) {
    const auto site = sites_.find(record.displayName);
    if (site == sites_.end()) continue;
    for (const auto type : types) site->second.erase(type);
    if (site->second.empty()) sites_.erase(site);
  }
  queue_.async([failure = failure_, completion = std::move(completion)]() mutable {
    std::move(completion)(std::move(failure));
  });
}

}  // namespace orivex::testing
