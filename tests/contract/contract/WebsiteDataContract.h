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

  Records fetch() {
    std::optional<Records> result;
    store().fetchRecords([&](auto records) { result = std::get<Records>(std::move(records)); });
    EXPECT_FALSE(result) << "completed inside the call";
    EXPECT_TRUE(this->wait([&] { return result.has_value(); }));
    return result.value_or(Records());
  }

  void remove(const Records& records) {
    int completions = 0;
    store().removeData(records, [&](const auto& failure) {
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
  this->leaveCookie();
  const auto records = this->fetch();
  ASSERT_FALSE(records.empty());
  EXPECT_NE(records.front().displayName, "");
  this->remove(records);
  EXPECT_TRUE(this->fetch().empty());
  this->remove({});
}

REGISTER_TYPED_TEST_SUITE_P(WebsiteDataContract, WhatIsRemovedIsNoLongerFetched);

}  // namespace orivex::contract
