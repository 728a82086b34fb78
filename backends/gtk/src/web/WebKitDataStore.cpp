#include "WebKitDataStore.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

using Records = WebsiteDataStore::Records;
using FetchCompletion = Once<void(std::variant<Records, Failure>)>;
using RemoveCompletion = Once<void(std::optional<Failure>)>;

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

void fetch(WebKitWebsiteDataManager* manager, WebKitWebsiteDataTypes types, FetchCompletion completion) {
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
  webkit_website_data_manager_fetch(manager, types, nullptr, fetched.function, fetched.data);
}

// A page that shows keeps its own pictures and session alive; the rest must be gone.
constexpr auto removableTypes = static_cast<WebKitWebsiteDataTypes>(
    WEBKIT_WEBSITE_DATA_ALL & ~(WEBKIT_WEBSITE_DATA_MEMORY_CACHE | WEBKIT_WEBSITE_DATA_SESSION_STORAGE));

// A page that ends at the same moment may still write once more.
constexpr int mostTries = 3;

/// One removal. WebKit tells no error, whatever it could not delete: what is still there says more.
struct Removal {
  std::set<std::string> names;
  RemoveCompletion completion;
  int tries = 0;
};

void remove(WebKitWebsiteDataManager* manager, Removal removal, const Records& records);

void removeWhatIsLeft(WebKitWebsiteDataManager* manager, Removal removal) {
  fetch(manager, removableTypes, [manager, removal = std::move(removal)](auto found) mutable {
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
  const auto removed = asyncCallback([removal = std::move(removal)](GObject* source, GAsyncResult* result) mutable {
    auto* const owner = WEBKIT_WEBSITE_DATA_MANAGER(source);
    GError* raised = nullptr;
    webkit_website_data_manager_remove_finish(owner, result, &raised);
    if (auto failure = failureOf(raised)) return std::move(removal.completion)(std::move(failure));
    removeWhatIsLeft(owner, std::move(removal));
  });
  GListPtr list;
  for (const auto& record : records) list.reset(g_list_prepend(list.release(), record.handle.get()));
  webkit_website_data_manager_remove(manager, WEBKIT_WEBSITE_DATA_ALL, list.get(), nullptr, removed.function,
                                     removed.data);
}

}  // namespace

WebKitDataStore::WebKitDataStore(WebKitNetworkSession* session, std::filesystem::path folder)
    : manager_(GRef<WebKitWebsiteDataManager>::share(webkit_network_session_get_website_data_manager(session))),
      folder_(std::move(folder)) {}

void WebKitDataStore::fetchRecords(FetchCompletion completion) {
  fetch(manager_.get(), WEBKIT_WEBSITE_DATA_ALL, std::move(completion));
}

// A session that got no folders, as on a full disk, does not reach what an earlier one has left in them.
std::optional<Failure> WebKitDataStore::outOfReach() const {
  std::error_code error;
  const bool isReached = webkit_website_data_manager_is_ephemeral(manager_.get()) == FALSE;
  if (isReached || !std::filesystem::exists(folder_, error) || std::filesystem::is_empty(folder_, error)) return {};
  return Failure{"the data in " + folder_.string() + " is out of reach"};
}

void WebKitDataStore::removeData(const Records& records, RemoveCompletion completion) {
  auto report = [completion = std::move(completion), stays = outOfReach()](std::optional<Failure> failure) mutable {
    std::move(completion)(failure ? std::move(failure) : std::move(stays));
  };
  if (records.empty()) {
    // WebKit refuses an empty list without calling back; a fetch does, later.
    return fetch(manager_.get(), removableTypes,
                 [report = std::move(report)](const auto& /*found*/) mutable { report({}); });
  }
  Removal removal{{}, std::move(report)};
  for (const auto& record : records) removal.names.insert(record.displayName);
  remove(manager_.get(), std::move(removal), records);
}

}  // namespace orivex::gtk
