#pragma once

#include <webkit/webkit.h>

#include "glib/GRef.h"

#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex::gtk {

/// The data of all web views of one network session. A failure of WebKit's is one log line and counts as nothing found
/// or as done.
class WebKitDataStore final : public WebsiteDataStore {
 public:
  explicit WebKitDataStore(WebKitNetworkSession* session);

  void fetchRecords(const std::set<WebsiteDataType>& types,
                    Once<void(std::vector<WebsiteDataRecord>)> completion) override;
  void removeData(const std::set<WebsiteDataType>& types, const std::vector<WebsiteDataRecord>& records,
                  Once<void()> completion) override;

 private:
  GRef<WebKitWebsiteDataManager> manager_;
};

}  // namespace orivex::gtk
