#include <gtest/gtest.h>

#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "web/WebKitDataStore.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 20;

class WebKitDataStoreTest : public ::testing::Test {
 protected:
  void addCookie(const char* domain) {
    auto* const cookie = soup_cookie_new("visitor", "1", domain, "/", 3600);
    bool added = false;
    webkit_cookie_manager_add_cookie(
        webkit_network_session_get_cookie_manager(session_.get()), cookie, nullptr,
        [](GObject*, GAsyncResult*, gpointer done) { *static_cast<bool*>(done) = true; }, &added);
    soup_cookie_free(cookie);
    EXPECT_TRUE(wait([&] { return added; }, patience));
  }

  std::vector<WebsiteDataRecord> fetch() {
    std::optional<std::vector<WebsiteDataRecord>> records;
    store_.fetchRecords([&](auto found) { records = std::get<WebsiteDataStore::Records>(std::move(found)); });
    EXPECT_FALSE(records) << "answered inside the call";
    EXPECT_TRUE(wait([&] { return records.has_value(); }, patience));
    return records.value_or(std::vector<WebsiteDataRecord>{});
  }

  std::optional<Failure> remove(const std::vector<WebsiteDataRecord>& records) {
    std::optional<std::optional<Failure>> result;
    store_.removeData(records, [&](auto failure) { result = std::move(failure); });
    EXPECT_TRUE(wait([&] { return result.has_value(); }, patience));
    return result.value_or(std::nullopt);
  }

  static std::set<std::string> names(const std::vector<WebsiteDataRecord>& records) {
    std::set<std::string> names;
    for (const auto& record : records) names.insert(record.displayName);
    return names;
  }

  TemporaryFolder folder_;
  GRef<WebKitNetworkSession> session_ = GRef<WebKitNetworkSession>::adopt(
      webkit_network_session_new((folder_.path() / "data").c_str(), (folder_.path() / "cache").c_str()));
  WebKitDataStore store_{session_.get(), folder_.path() / "data"};
};

TEST_F(WebKitDataStoreTest, RemovesOnlyTheGivenRecords) {
  addCookie("shop.example");
  addCookie("bank.example");
  auto records = fetch();
  EXPECT_EQ(names(records), (std::set<std::string>{"bank.example", "shop.example"}));
  std::erase_if(records, [](const auto& record) { return record.displayName == "bank.example"; });
  EXPECT_FALSE(remove(records));
  EXPECT_EQ(names(fetch()), (std::set<std::string>{"bank.example"}));
  EXPECT_FALSE(remove(fetch()));
  EXPECT_TRUE(fetch().empty());
  EXPECT_FALSE(remove({}));
}

TEST_F(WebKitDataStoreTest, SaysWhatASessionWithoutFoldersCannotReach) {
  const auto session = GRef<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral());
  const auto failureIn = [&](const char* folder) {
    std::optional<std::optional<Failure>> result;
    WebKitDataStore store(session.get(), folder_.path() / folder);
    store.removeData({}, [&](auto failure) { result = std::move(failure); });
    EXPECT_TRUE(wait([&] { return result.has_value(); }, patience));
    return result && *result ? (*result)->description : "";
  };
  folder_.write("left/localstorage", "x");
  EXPECT_NE(failureIn("left").find("out of reach"), std::string::npos);
  EXPECT_EQ(failureIn("none"), "");
}

}  // namespace
}  // namespace orivex::gtk
