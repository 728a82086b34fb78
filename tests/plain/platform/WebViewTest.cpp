#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/ui/WebView.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex {
namespace {

class Page final : public ScriptMessageHandler, public NavigationDelegate {
 public:
  void didReceive(const ScriptMessage& message) override { note(message.name + message.body); }
  void didStartProvisionalNavigation() override { note("start"); }
  void didReceiveServerRedirect() override { note("redirect"); }
  void didCommitNavigation() override { note("commit"); }
  void didFinishNavigation() override { note("finish"); }
  void didFailProvisionalNavigation(const std::string& error) override { note("failProvisional " + error); }
  void didFailNavigation(const std::string& error) override { note("fail " + error); }
  NavigationPolicy decideNavigationAction(const std::optional<std::string>& url) override {
    note("ask " + url.value_or(""));
    return NavigationPolicy::allow;
  }
  NavigationPolicy decideNavigationResponse() override { return NavigationPolicy::allow; }

  std::vector<std::string> heard;
  std::shared_ptr<WebView> closedBy;  // let go of at the event `closeAt`
  std::string closeAt;

 private:
  void note(const std::string& event) {
    heard.push_back(event);
    if (event == closeAt) closedBy.reset();
  }
};

class WebViewTest : public ::testing::Test {
 protected:
  WebViewTest() {
    WebViewConfiguration configuration;
    configuration.userContentController->addScriptMessageHandler(page_, "goBack");
    configuration.userContentController->addScriptMessageHandler(page_, "openUrl");
    configuration.userContentController->addUserScript({"window.a=1;", UserScript::InjectionTime::documentStart, true});
    view_ = std::make_shared<WebView>(Rect{0, 0, 100, 100}, configuration);
    view_->setNavigationDelegate(page_);
    view_->load({*Url::parse("https://chat.test/a"), 60, {}});
    page_->closedBy = view_;
  }

  testing::VirtualWebEngine& engine() { return *device_.webEngines().engines().back(); }

  testing::VirtualDevice device_;
  std::shared_ptr<Page> page_ = std::make_shared<Page>();
  std::shared_ptr<WebView> view_;
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

TEST_F(WebViewTest, MayGoInAnyOfItsOwnCallbacks) {
  for (const std::string event : {"ask https://chat.test/a", "start", "commit", "goBack1", "finish"}) {
    auto page = std::make_shared<Page>();
    page->closeAt = event;
    WebViewConfiguration configuration;
    configuration.userContentController->addScriptMessageHandler(page, "goBack");
    page->closedBy = std::make_shared<WebView>(Rect{}, std::move(configuration));
    page->closedBy->setNavigationDelegate(page);
    page->closedBy->load({*Url::parse("https://chat.test/a"), 60, {}});
    engine().startProvisional();
    engine().commit("https://chat.test/a");
    engine().post("goBack", "1");
    engine().finish();
    device_.runUntilIdle();
    EXPECT_EQ(page->closedBy, nullptr) << event;
    EXPECT_EQ(page->heard.back(), event);
  }
}

TEST_F(WebViewTest, MayGoInAnObservationOfItsAddress) {
  page_->closedBy.reset();
  const std::weak_ptr<WebView> life = view_;
  const auto observation = view_->observeUrl([this](const auto&, const auto&) { view_.reset(); });
  engine().completeLoad();
  device_.runUntilIdle();
  EXPECT_TRUE(life.expired());
  EXPECT_TRUE(device_.webEngines().engines().empty());
}

TEST_F(WebViewTest, KeepsNeitherItsDelegateNorItsHandlers) {
  page_->closedBy.reset();
  const std::weak_ptr<Page> life = page_;
  page_.reset();
  EXPECT_TRUE(life.expired());
  engine().completeLoad();
  engine().post("goBack", "1");
  device_.runUntilIdle();
  EXPECT_EQ(view_->url(), "https://chat.test/a");
}

}  // namespace
}  // namespace orivex
