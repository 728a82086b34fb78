#pragma once

#include <webkit/webkit.h>

#include "glib/GRef.h"

#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex::gtk {

/// The data of all web views of one network session.
class WebKitDataStore final : public WebsiteDataStore {
 public:
  explicit WebKitDataStore(WebKitNetworkSession* session);

  void fetchRecords(const std::set<WebsiteDataType>& types,
                    Once<void(std::variant<Records, Failure>)> completion) override;
  void removeData(const std::set<WebsiteDataType>& types, const Records& records,
                  Once<void(std::optional<Failure>)> completion) override;

 private:
  GRef<WebKitWebsiteDataManager> manager_;
};

}  // namespace orivex::gtk
