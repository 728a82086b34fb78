#include "WebKitDataStore.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

using Records = WebsiteDataStore::Records;
using FetchCompletion = Once<void(std::variant<Records, Failure>)>;
using RemoveCompletion = Once<void(std::optional<Failure>)>;

constexpr std::pair<WebsiteDataType, WebKitWebsiteDataTypes> dataTypes[] = {
    {WebsiteDataType::memoryCache, WEBKIT_WEBSITE_DATA_MEMORY_CACHE},
    {WebsiteDataType::diskCache, WEBKIT_WEBSITE_DATA_DISK_CACHE},
    {WebsiteDataType::offlineApplicationCache, WEBKIT_WEBSITE_DATA_OFFLINE_APPLICATION_CACHE},
    {WebsiteDataType::sessionStorage, WEBKIT_WEBSITE_DATA_SESSION_STORAGE},
    {WebsiteDataType::localStorage, WEBKIT_WEBSITE_DATA_LOCAL_STORAGE},
    {WebsiteDataType::indexedDatabases, WEBKIT_WEBSITE_DATA_INDEXEDDB_DATABASES},
    {WebsiteDataType::cookies, WEBKIT_WEBSITE_DATA_COOKIES},
    {WebsiteDataType::deviceIdHashSalt, WEBKIT_WEBSITE_DATA_DEVICE_ID_HASH_SALT},
    {WebsiteDataType::hstsCache, WEBKIT_WEBSITE_DATA_HSTS_CACHE},
    {WebsiteDataType::trackingPrevention, WEBKIT_WEBSITE_DATA_ITP},
    {WebsiteDataType::serviceWorkerRegistrations, WEBKIT_WEBSITE_DATA_SERVICE_WORKER_REGISTRATIONS},
    {WebsiteDataType::domCache, WEBKIT_WEBSITE_DATA_DOM_CACHE},
};

unsigned webKitTypes(const std::set<WebsiteDataType>& types) {
  unsigned mask = 0;
  for (const auto& [type, webKitType] : dataTypes) {
    if (types.contains(type)) mask |= webKitType;
  }
  return mask;
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

void fetch(WebKitWebsiteDataManager* manager, unsigned types, FetchCompletion completion) {
  const auto fetched =
      asyncCallback([completion = std::move(completion)](GObject* source, GAsyncResult* result) mutable {
        GError* raised = nullptr;
        const RecordList list(
            webkit_website_data_manager_fetch_finish(WEBKIT_WEBSITE_DATA_MANAGER(source), result, &raised));
        if (auto failure = failureOf(raised)) return std::move(completion)(*std::move(failure));
        Records records;
        for (const GList* node = list.get(); node; node = node->next) {
          records.push_back(makeRecord(static_cast<WebKitWebsiteData*>(node->data)));
        }
        std::move(completion)(std::move(records));
      });
  webkit_website_data_manager_fetch(manager, static_cast<WebKitWebsiteDataTypes>(types), nullptr, fetched.function,
                                    fetched.data);
}

// A page that shows keeps its own pictures and session alive; the rest must be gone.
constexpr unsigned livingTypes = WEBKIT_WEBSITE_DATA_MEMORY_CACHE | WEBKIT_WEBSITE_DATA_SESSION_STORAGE;

// A page that ends at the same moment may still write once more.
constexpr int mostTries = 3;

/// One removal. WebKit tells no error, whatever it could not delete: what is still there says more.
struct Removal {
  unsigned types;
  std::set<std::string> names;
  RemoveCompletion completion;
  int tries = 0;
};

void remove(WebKitWebsiteDataManager* manager, Removal removal, const Records& records);

void removeWhatIsLeft(WebKitWebsiteDataManager* manager, Removal removal) {
  const unsigned types = removal.types & ~livingTypes;
  if (types == 0) return std::move(removal.completion)(std::nullopt);
  fetch(manager, types, [manager, removal = std::move(removal)](auto found) mutable {
    if (auto* const failure = std::get_if<Failure>(&found)) return std::move(removal.completion)(*failure);
    auto& left = std::get<Records>(found);
    std::erase_if(left, [&](const auto& record) { return !removal.names.contains(record.displayName); });
    if (left.empty()) {
      std::move(removal.completion)(std::nullopt);
    } else if (removal.tries == mostTries) {
      std::move(removal.completion)(Failure{"the data of " + left.front().displayName + " cannot be removed"});
    } else {
      remove(manager, std::move(removal), left);
    }
  });
}

void remove(WebKitWebsiteDataManager* manager, Removal removal, const Records& records) {
  ++removal.tries;
  const auto types = static_cast<WebKitWebsiteDataTypes>(removal.types);
  const auto removed = asyncCallback([removal = std::move(removal)](GObject* source, GAsyncResult* result) mutable {
    auto* const owner = WEBKIT_WEBSITE_DATA_MANAGER(source);
    GError* raised = nullptr;
    webkit_website_data_manager_remove_finish(owner, result, &raised);
    if (auto failure = failureOf(raised)) return std::move(removal.completion)(std::move(failure));
    removeWhatIsLeft(owner, std::move(removal));
  });
  GListPtr list;
  for (const auto& record : records) list.reset(g_list_prepend(list.release(), record.handle.get()));
  webkit_website_data_manager_remove(manager, types, list.get(), nullptr, removed.function, removed.data);
}

}  // namespace

WebKitDataStore::WebKitDataStore(WebKitNetworkSession* session, std::filesystem::path folder)
    : manager_(GRef<WebKitWebsiteDataManager>::share(webkit_network_session_get_website_data_manager(session))),
      folder_(std::move(folder)) {}

void WebKitDataStore::fetchRecords(const std::set<WebsiteDataType>& types, FetchCompletion completion) {
  fetch(manager_.get(), webKitTypes(types), std::move(completion));
}

// A session that got no folders, as on a full disk, does not reach what an earlier one has left in them.
std::optional<Failure> WebKitDataStore::outOfReach() const {
  std::error_code error;
  const bool isReached = webkit_website_data_manager_is_ephemeral(manager_.get()) == FALSE;
  if (isReached || !std::filesystem::exists(folder_, error) || std::filesystem::is_empty(folder_, error)) return {};
  return Failure{"the data in " + folder_.string() + " is out of reach"};
}

void WebKitDataStore::removeData(const std::set<WebsiteDataType>& types, const Records& records,
                                 RemoveCompletion completion) {
  auto report = [completion = std::move(completion), stays = outOfReach()](std::optional<Failure> failure) mutable {
    std::move(completion)(failure ? std::move(failure) : std::move(stays));
  };
  if (records.empty()) {
    // WebKit refuses an empty list without calling back; a fetch does, later.
    return fetch(manager_.get(), 0, [report = std::move(report)](const auto& /*found*/) mutable { report({}); });
  }
  Removal removal{webKitTypes(types), {}, std::move(report)};
  for (const auto& record : records) removal.names.insert(record.displayName);
  remove(manager_.get(), std::move(removal), records);
}

}  // namespace orivex::gtk
