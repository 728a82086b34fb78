#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "orivex/platform/ports/Device.h"
#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/UserDefaults.h"
#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex::testing {

/// Settings that a test writes.
class VirtualUserDefaults final : public UserDefaults {
 public:
  explicit VirtualUserDefaults(const MainQueue& queue) : queue_(queue) {}

  bool boolForKey(std::string_view key) const override;
  std::optional<std::string> stringForKey(std::string_view key) const override;

  void setBool(std::string_view key, bool value) { values_.insert_or_assign(std::string(key), value); }
  void setString(std::string_view key, std::string value) {
    values_.insert_or_assign(std::string(key), std::move(value));
  }

 private:
  const MainQueue& queue_;
  std::map<std::string, std::variant<bool, std::string>, std::less<>> values_;
};

/// A machine with the identifier that a test gives it.
class VirtualDeviceIdentity final : public Device {
 public:
  explicit VirtualDeviceIdentity(const MainQueue& queue) : queue_(queue) {}

  std::optional<std::string> identifierForVendor() const override;

  /// Absent: the system gives none.
  void setIdentifierForVendor(std::optional<std::string> identifier) { identifier_ = std::move(identifier); }

 private:
  const MainQueue& queue_;
  std::optional<std::string> identifier_ = "6F1D2C3B-4A59-4E68-8B77-90A1B2C3D4E5";
};

/// Folders that are only named; what was removed is remembered.
class VirtualFileManager final : public FileManager {
 public:
  explicit VirtualFileManager(const MainQueue& queue) : queue_(queue) {}

  std::optional<Url> documentDirectory() override;
  std::optional<Failure> removeItem(const Url& file) override;

  /// At first "/virtual/Documents"; absent: there is no folder to write to.
  void setDocumentDirectory(std::optional<std::string> path) { documentDirectory_ = std::move(path); }

  /// Removing files fails from now on, for this reason; empty: it succeeds.
  void failRemoval(std::string reason) { removalFailure_ = std::move(reason); }

  /// Paths, in the order of removal.
  const std::vector<std::string>& removed() const { return removed_; }
  void forgetRemoved() { removed_.clear(); }

 private:
  const MainQueue& queue_;
  std::optional<std::string> documentDirectory_ = "/virtual/Documents";
  std::string removalFailure_;
  std::vector<std::string> removed_;
};

/// Knows which sites have stored something, without the data.
class VirtualWebsiteDataStore final : public WebsiteDataStore {
 public:
  explicit VirtualWebsiteDataStore(MainQueue& queue) : queue_(queue) {}

  void fetchRecords(Once<void(std::variant<Records, Failure>)> completion) override;
  void removeData(const Records& records, Once<void(std::optional<Failure>)> completion) override;

  /// Stores something for `site`.
  void put(const std::string& site) { sites_.insert(site); }

  /// From now on what is stored can be neither read nor removed, as on a broken disk; `failure` says why.
  void breakDown(Failure failure) { failure_ = std::move(failure); }

  const std::set<std::string>& sites() const { return sites_; }

 private:
  MainQueue& queue_;
  std::set<std::string> sites_;
  std::optional<Failure> failure_;
};

}  // namespace orivex::testing
