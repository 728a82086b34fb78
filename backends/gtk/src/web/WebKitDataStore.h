#pragma once

#include <filesystem>

#include <webkit/webkit.h>

#include "../glib/GRef.h"

#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex::gtk {

/// The data of all web views of one network session.
class WebKitDataStore final : public WebsiteDataStore {
 public:
  /// `folder` is where the session's data lie, if it keeps any.
  WebKitDataStore(WebKitNetworkSession* session, std::filesystem::path folder);

  void fetchRecords(Once<void(std::variant<Records, Failure>)> completion) override;
  void removeData(const Records& records, Once<void(std::optional<Failure>)> completion) override;

 private:
  std::optional<Failure> outOfReach() const;

  GRef<WebKitWebsiteDataManager> manager_;
  const std::filesystem::path folder_;
};

}  // namespace orivex::gtk
