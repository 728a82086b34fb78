#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Once.h"

namespace orivex {

/// Kinds of data that web pages leave on the device.
enum class WebsiteDataType {
  memoryCache,
  diskCache,
  offlineApplicationCache,
  sessionStorage,
  localStorage,
  indexedDatabases,
  cookies,
  deviceIdHashSalt,
  hstsCache,
  trackingPrevention,
  serviceWorkerRegistrations,
  domCache,
};

/// What one site has stored; a backend's record carries its own handle.
struct WebsiteDataRecord {
  std::string displayName;
  std::shared_ptr<void> handle;
};

/// The data that all web views of the component share. Main thread; completions come on the main thread, once.
class WebsiteDataStore {
 public:
  WebsiteDataStore() = default;
  WebsiteDataStore(const WebsiteDataStore&) = delete;
  WebsiteDataStore& operator=(const WebsiteDataStore&) = delete;
  virtual ~WebsiteDataStore() = default;

  static std::set<WebsiteDataType> allTypes();

  using Records = std::vector<WebsiteDataRecord>;

  virtual void fetchRecords(const std::set<WebsiteDataType>& types,
                            Once<void(std::variant<Records, Failure>)> completion) = 0;

  /// Removes the data of `types` of each of `records`; `completion` gets a failure when some of it stays on the device.
  virtual void removeData(const std::set<WebsiteDataType>& types, const Records& records,
                          Once<void(std::optional<Failure>)> completion) = 0;
};

}  // namespace orivex
