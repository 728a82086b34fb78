#include "WebKitDataStore.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "Contained.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

using Records = WebsiteDataStore::Records;
using FetchCompletion = Once<void(std::variant<Records, Failure>)>;
using RemoveCompletion = Once<void(std::optional<Failure>)>;

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

void freeRecords(GList* records) {
  g_list_free_full(records,
                   [](gpointer record) { webkit_website_data_unref(static_cast<WebKitWebsiteData*>(record)); });
}
using RecordList = std::unique_ptr<GList, FreeWith<freeRecords>>;

WebsiteDataRecord makeRecord(WebKitWebsiteData* data) {
  return {webkit_website_data_get_name(data),
          std::shared_ptr<WebKitWebsiteData>(webkit_website_data_ref(data), webkit_website_data_unref)};
}

std::optional<Failure> failureOf(GError* raised) {
  const GErrorPtr error(raised);
  return error ? std::optional(Failure{error->message}) : std::nullopt;
}

void fetched(GObject* manager, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<FetchCompletion> completion(static_cast<FetchCompletion*>(data));
  GError* raised = nullptr;
  const RecordList list(
      webkit_website_data_manager_fetch_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result, &raised));
  contained([&] {
    if (auto failure = failureOf(raised)) return std::move(*completion)(*std::move(failure));
    Records records;
    for (const GList* node = list.get(); node; node = node->next) {
      records.push_back(makeRecord(static_cast<WebKitWebsiteData*>(node->data)));
    }
    std::move (*completion)(std::move(records));
  });
}

void fetch(WebKitWebsiteDataManager* manager, unsigned types, FetchCompletion completion) {
  webkit_website_data_manager_fetch(manager, static_cast<WebKitWebsiteDataTypes>(types), nullptr, fetched,
                                    std::make_unique<FetchCompletion>(std::move(completion)).release());
}

// A page that shows keeps its own pictures and session alive; the rest must be gone.
constexpr unsigned livingTypes = WEBKIT_WEBSITE_DATA_MEMORY_CACHE | WEBKIT_WEBSITE_DATA_SESSION_STORAGE;

std::optional<Failure> leftOver(const Records& found, const std::set<std::string>& removed) {
  const auto left = std::find_if(found.begin(), found.end(),
                                 [&](const auto& record) { return removed.contains(record.displayName); });
  if (left == found.end()) return std::nullopt;
  return Failure{"the data of " + left->displayName + " and maybe others stay on the disk"};
}

/// One removal. WebKit tells no error, whatever it could not delete: what is still there says more.
struct Removal {
  unsigned types;
  std::set<std::string> names;
  RemoveCompletion completion;
};

void removed(GObject* source, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<Removal> removal(static_cast<Removal*>(data));
  auto* const manager = WEBKIT_WEBSITE_DATA_MANAGER(source);
  GError* raised = nullptr;
  webkit_website_data_manager_remove_finish(manager, result, &raised);
  contained([&] {
    if (auto failure = failureOf(raised)) return std::move(removal->completion)(std::move(failure));
    const unsigned types = removal->types & ~livingTypes;
    if (types == 0 || removal->names.empty()) return std::move(removal->completion)(std::nullopt);
    fetch(manager, types, [names = removal->names, completion = std::move(removal->completion)](auto left) mutable {
      const auto* const failure = std::get_if<Failure>(&left);
      std::move(completion)(failure ? std::optional(*failure) : leftOver(std::get<Records>(left), names));
    });
  });
}

}  // namespace

WebKitDataStore::WebKitDataStore(WebKitNetworkSession* session)
    : manager_(GRef<WebKitWebsiteDataManager>::share(webkit_network_session_get_website_data_manager(session))) {}

void WebKitDataStore::fetchRecords(const std::set<WebsiteDataType>& types, FetchCompletion completion) {
  fetch(manager_.get(), webKitTypes(types), std::move(completion));
}

void WebKitDataStore::removeData(const std::set<WebsiteDataType>& types, const Records& records,
                                 RemoveCompletion completion) {
  auto removal = std::make_unique<Removal>(Removal{webKitTypes(types), {}, std::move(completion)});
  if (records.empty()) {
    // WebKit refuses an empty list without calling back.
    const auto task = GRef<GTask>::adopt(g_task_new(manager_.get(), nullptr, removed, removal.release()));
    g_task_return_boolean(task.get(), TRUE);
    return;
  }
  GListPtr list;
  for (const auto& record : records) {
    removal->names.insert(record.displayName);
    list.reset(g_list_prepend(list.release(), record.handle.get()));
  }
  webkit_website_data_manager_remove(manager_.get(), webKitTypes(types), list.get(), nullptr, removed,
                                     removal.release());
}

}  // namespace orivex::gtk
