#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex {

std::set<WebsiteDataType> WebsiteDataStore::allTypes() {
  using enum WebsiteDataType;
  return {memoryCache,
          diskCache,
          offlineApplicationCache,
          sessionStorage,
          localStorage,
          indexedDatabases,
          cookies,
          deviceIdHashSalt,
          hstsCache,
          trackingPrevention,
          domCache,
          serviceWorkerRegistrations};
}

}  // namespace orivex
