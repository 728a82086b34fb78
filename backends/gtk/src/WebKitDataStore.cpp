#include "WebKitDataStore.h"

#include <memory>
#include <utility>

#include "Contained.h"
#include "glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

using FetchCompletion = Once<void(std::vector<WebsiteDataRecord>)>;
using RemoveCompletion = Once<void()>;

WebKitWebsiteDataTypes webKitType(WebsiteDataType type) {
  switch (type) {
    case WebsiteDataType::memoryCache:
      return WEBKIT_WEBSITE_DATA_MEMORY_CACHE;
    case WebsiteDataType::diskCache:
      return WEBKIT_WEBSITE_DATA_DISK_CACHE;
    case WebsiteDataType::offlineApplicationCache:
      return WEBKIT_WEBSITE_DATA_OFFLINE_APPLICATION_CACHE;
    case WebsiteDataType::sessionStorage:
      return WEBKIT_WEBSITE_DATA_SESSION_STORAGE;
    case WebsiteDataType::localStorage:
      return WEBKIT_WEBSITE_DATA_LOCAL_STORAGE;
    case WebsiteDataType::indexedDatabases:
      return WEBKIT_WEBSITE_DATA_INDEXEDDB_DATABASES;
    case WebsiteDataType::cookies:
      return WEBKIT_WEBSITE_DATA_COOKIES;
    case WebsiteDataType::deviceIdHashSalt:
      return WEBKIT_WEBSITE_DATA_DEVICE_ID_HASH_SALT;
    case WebsiteDataType::hstsCache:
      return WEBKIT_WEBSITE_DATA_HSTS_CACHE;
    case WebsiteDataType::trackingPrevention:
      return WEBKIT_WEBSITE_DATA_ITP;
    case WebsiteDataType::serviceWorkerRegistrations:
      return WEBKIT_WEBSITE_DATA_SERVICE_WORKER_REGISTRATIONS;
    case WebsiteDataType::domCache:
      return WEBKIT_WEBSITE_DATA_DOM_CACHE;
  }
  return {};
}

WebKitWebsiteDataTypes webKitTypes(const std::set<WebsiteDataType>& types) {
  unsigned mask = 0;
  for (const auto type : types) mask |= webKitType(type);
  return static_cast<WebKitWebsiteDataTypes>(mask);
}

// A completion on its way through a C callback's user data.
template <class Completion>
gpointer pass(Completion completion) {
  return std::make_unique<Completion>(std::move(completion)).release();
}
template <class Completion>
Completion receive(gpointer data) {
  const std::unique_ptr<Completion> passed(static_cast<Completion*>(data));
  return std::move(*passed);
}

void freeRecords(GList* records) {
  g_list_free_full(records,
                   [](gpointer record) { webkit_website_data_unref(static_cast<WebKitWebsiteData*>(record)); });
}
using RecordList = std::unique_ptr<GList, FreeWith<freeRecords>>;

WebsiteDataRecord makeRecord(WebKitWebsiteData* data) {
  return {webkit_website_data_get_name(data),
          std::shared_ptr<WebKitWebsiteData>(webkit_website_data_ref(data), webkit_website_data_unref)};
}

void logFailure(const char* action, GError* raised) {
  if (const GErrorPtr error(raised); error) {
    log::print(std::string("Error ") + action + " website data: " + error->message);
  }
}

void fetched(GObject* manager, GAsyncResult* result, gpointer data) noexcept {
  auto completion = receive<FetchCompletion>(data);
  GError* error = nullptr;
  const RecordList list(webkit_website_data_manager_fetch_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result, &error));
  contained([&] {
    logFailure("fetching", error);
    std::vector<WebsiteDataRecord> records;
    for (const GList* node = list.get(); node; node = node->next) {
      records.push_back(makeRecord(static_cast<WebKitWebsiteData*>(node->data)));
    }
    std::move(completion)(std::move(records));
  });
}

void removed(GObject* manager, GAsyncResult* result, gpointer data) noexcept {
  auto completion = receive<RemoveCompletion>(data);
  GError* error = nullptr;
  webkit_website_data_manager_remove_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result, &error);
  contained([&] {
    logFailure("removing", error);
    std::move(completion)();
  });
}

// WebKit refuses an empty list without calling back.
void removeNothing(WebKitWebsiteDataManager* manager, RemoveCompletion completion) {
  const auto task = GRef<GTask>::adopt(g_task_new(manager, nullptr, removed, pass(std::move(completion))));
  g_task_return_boolean(task.get(), TRUE);
}

}  // namespace

WebKitDataStore::WebKitDataStore(WebKitNetworkSession* session)
    : manager_(GRef<WebKitWebsiteDataManager>::share(webkit_network_session_get_website_data_manager(session))) {}

void WebKitDataStore::fetchRecords(const std::set<WebsiteDataType>& types, FetchCompletion completion) {
  webkit_website_data_manager_fetch(manager_.get(), webKitTypes(types), nullptr, fetched, pass(std::move(completion)));
}

void WebKitDataStore::removeData(const std::set<WebsiteDataType>& types, const std::vector<WebsiteDataRecord>& records,
                                 RemoveCompletion completion) {
  if (records.empty()) return removeNothing(manager_.get(), std::move(completion));
  GListPtr list;
  for (const auto& record : records) list.reset(g_list_prepend(list.release(), record.handle.get()));
  webkit_website_data_manager_remove(manager_.get(), webKitTypes(types), list.get(), nullptr, removed,
                                     pass(std::move(completion)));
}

}  // namespace orivex::gtk
