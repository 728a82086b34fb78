#pragma once

#include <memory>

#include "contract/Fixture.h"
#include "contract/WebRecorder.h"

#include "orivex/platform/ports/WebsiteDataStore.h"

namespace orivex::contract {

template <WebFixture Fixture>
class WebsiteDataContract : public Suite<Fixture> {
 protected:
  using Records = std::vector<WebsiteDataRecord>;

  /// Lets a page leave a cookie on the device.
  void leaveCookie() {
    WebRecorder web(this->fixture_.platform(), {});
    web.load(this->fixture_.serve({{"/", {.body = "<p>page", .cookie = "visitor=7"}}}) + "/");
    EXPECT_TRUE(this->wait([&] { return web.has("finish"); }));
  }

  Records fetch(const std::set<WebsiteDataType>& types) {
    std::optional<Records> result;
    store().fetchRecords(types, [&](auto records) { result = std::get<Records>(std::move(records)); });
    EXPECT_FALSE(result) << "completed inside the call";
    EXPECT_TRUE(this->wait([&] { return result.has_value(); }));
    return result.value_or(Records());
  }

  void remove(const std::set<WebsiteDataType>& types, const Records& records) {
    int completions = 0;
    store().removeData(types, records, [&](const auto& failure) {
      EXPECT_FALSE(failure) << failure->description;
      ++completions;
    });
    EXPECT_EQ(completions, 0) << "completed inside the call";
    EXPECT_TRUE(this->wait([&] { return completions > 0; }));
  }

  WebsiteDataStore& store() { return this->fixture_.platform().websiteDataStore; }
};
TYPED_TEST_SUITE_P(WebsiteDataContract);

TYPED_TEST_P(WebsiteDataContract, WhatIsRemovedIsNoLongerFetched) {
  const std::set cookies{WebsiteDataType::cookies};
  this->leaveCookie();
  const auto records = this->fetch(cookies);
  ASSERT_FALSE(records.empty());
  EXPECT_NE(records.front().displayName, "");
  EXPECT_TRUE(this->fetch({WebsiteDataType::indexedDatabases}).empty());
  this->remove({WebsiteDataType::localStorage}, records);
  EXPECT_EQ(this->fetch(cookies).size(), records.size()) << "another kind of data went as well";
  this->remove(WebsiteDataStore::allTypes(), records);
  EXPECT_TRUE(this->fetch(cookies).empty());
}

TYPED_TEST_P(WebsiteDataContract, RemovingNothingCompletes) {
  this->remove(WebsiteDataStore::allTypes(), {});
}

REGISTER_TYPED_TEST_SUITE_P(WebsiteDataContract, WhatIsRemovedIsNoLongerFetched, RemovingNothingCompletes);

}  // namespace orivex::contract
