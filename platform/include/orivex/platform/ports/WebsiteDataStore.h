#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"

namespace orivex {

/// What one site has stored; a backend's record carries its own handle.
struct WebsiteDataRecord {
  std::string displayName;
  std::shared_ptr<void> handle;
};

/// The data of every kind that all web views of the component share: caches, cookies, storage, databases. Main thread;
/// completions come on the main thread, once.
class WebsiteDataStore : public Interface {
 public:
  using Records = std::vector<WebsiteDataRecord>;

  virtual void fetchRecords(Once<void(std::variant<Records, Failure>)> completion) = 0;

  /// Removes the data of each of `records`; `completion` gets a failure when some of it stays on the device.
  virtual void removeData(const Records& records, Once<void(std::optional<Failure>)> completion) = 0;
};

}  // namespace orivex
