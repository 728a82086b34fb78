#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/ui/WebView.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex {
namespace {

class WebViewTest : public ::testing::Test {
 protected:
  WebViewTest() { view_->load({*Url::parse("https://chat.test/a"), 60, {}}); }

  testing::VirtualWebEngine& engine() { return *device_.webEngines().engines().back(); }

  testing::VirtualDevice device_;
  std::shared_ptr<WebView> view_ = std::make_shared<WebView>(Rect{0, 0, 100, 100}, WebEngineConfiguration{});
};

TEST_F(WebViewTest, TheAddressIsObservedWithWhatItWasBefore) {
  using Change = std::pair<std::optional<std::string>, std::optional<std::string>>;
  std::vector<Change> changes;
  auto observation = view_->observeUrl([&](const auto& before, const auto& now) { changes.emplace_back(before, now); });
  engine().completeLoad();
  engine().changeUrl("https://chat.test/b");
  device_.runUntilIdle();
  engine().die();
  device_.runUntilIdle();
  EXPECT_EQ(view_->url(), std::nullopt);
  observation = {};
  engine().completeLoad();
  device_.runUntilIdle();
  EXPECT_EQ(changes, (std::vector<Change>{{std::nullopt, "https://chat.test/a"},
                                          {"https://chat.test/a", "https://chat.test/b"},
                                          {"https://chat.test/b", std::nullopt}}));
}

TEST_F(WebViewTest, MayGoInAnObservationOfItsAddress) {
  const std::weak_ptr<WebView> life = view_;
  const auto observation = view_->observeUrl([this](const auto&, const auto&) { view_.reset(); });
  engine().completeLoad();
  device_.runUntilIdle();
  EXPECT_TRUE(life.expired());
  EXPECT_TRUE(device_.webEngines().engines().empty());
}

}  // namespace
}  // namespace orivex
