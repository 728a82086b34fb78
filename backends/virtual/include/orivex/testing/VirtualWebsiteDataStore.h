#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex::testing {

/// Website data as kinds by site, without the data.
class VirtualWebsiteDataStore final : public WebsiteDataStore {
 public:
  explicit VirtualWebsiteDataStore(MainQueue& queue) : queue_(queue) {}

  void fetchRecords(const std::set<WebsiteDataType>& types,
                    Once<void(std::variant<Records, Failure>)> completion) override;
  void removeData(const std::set<WebsiteDataType>& types, const Records& records,
                  Once<void(std::optional<Failure>)> completion) override;

  /// Adds to what `site` has stored.
  void put(const std::string& site, const std::set<WebsiteDataType>& types) {
    sites_[site].insert(types.begin(), types.end());
  }

  /// From now on what is stored can be neither read nor removed, as on a broken disk; `failure` says why.
  void breakDown(Failure failure) { failure_ = std::move(failure); }

  /// What each site has stored; a site with nothing left is not listed.
  const std::map<std::string, std::set<WebsiteDataType>>& sites() const { return sites_; }

 private:
  MainQueue& queue_;
  std::map<std::string, std::set<WebsiteDataType>> sites_;
  std::optional<Failure> failure_;
};

}  // namespace orivex::testing
