#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

using ProcessDeathTest = ChatScreenTest;

TEST_F(ProcessDeathTest, BringsThePageBackUntilItDiesTooOften) {
  const struct {
    const char* what;
    std::vector<double> deaths;
    int reloads;
    Lines story;
  } cases[] = {
      {"three times", {1, 2, 3}, 3, {}},
      {"a fourth time within ten seconds",
       {1, 2, 3, 10.9},
       3,
       {"10.9 shows 请求失败,请稍后重试", "12.9 hides 请求失败,请稍后重试"}},
      {"a fourth time ten seconds after the first", {1, 2, 3, 11}, 4, {}},
      {"slowly", {1, 6, 11, 16, 21}, 5, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    VirtualDevice device;  // each case from time 0
    device.webEngines().setLoader([](VirtualWebEngine& engine) { engine.completeLoad(); });
    const auto host = std::make_shared<ViewController>();
    device.application().window()->setRootViewController(host);
    const auto screen = started();
    host->present(screen, false);
    for (const double time : row.deaths) {
      device.mainQueue().asyncAfter(time, [&page = pageOf(*screen)] { page.die(); });
    }
    const bool givesUp = !row.story.empty();
    device.advance(12.9);
    EXPECT_TRUE(screen->isViewInWindow());
    EXPECT_EQ(screen->presentingViewController() == nullptr, givesUp);
    device.advance(20);
    EXPECT_EQ(screen->isViewInWindow(), !givesUp);
    EXPECT_EQ(pageOf(*screen).reloadCount(), row.reloads);
    EXPECT_EQ(pageOf(*screen).loads().size(), 1U);
    EXPECT_EQ(overlayStory(device), row.story);
    EXPECT_EQ(screen->webView()->url().has_value(), !givesUp);
  }
}

TEST_F(ProcessDeathTest, RevealsAPageThatDiedWhileItLoadedAndKeepsARevealedOneUp) {
  const auto screen = presentChecked();
  auto& page = pageOf(*screen);
  page.startProvisional();
  page.die();
  device_.advance(1);
  EXPECT_EQ(page.reloadCount(), 1);
  EXPECT_EQ(screen->loadView()->superview(), screen->view().get());
  page.completeLoad();
  device_.advance(4.4);
  EXPECT_TRUE(screen->isLoaded());
  EXPECT_EQ(screen->loadView()->superview(), nullptr);

  page.die();
  device_.advance(1);
  EXPECT_EQ(page.reloadCount(), 2);
  EXPECT_EQ(screen->webView()->alpha(), 1);
  EXPECT_EQ(screen->loadView()->superview(), nullptr);
}

TEST_F(ProcessDeathTest, LoadsAPageThatWasGivenUpWhenItsScreenShowsAgain) {
  device_.webEngines().setLoader([](VirtualWebEngine& engine) { engine.completeLoad(); });
  const auto screen = presentChecked();
  auto& page = pageOf(*screen);
  for (int deaths = 0; deaths < 4; ++deaths) {
    page.die();
    device_.advance(0.5);
  }
  device_.advance(2);
  ASSERT_FALSE(screen->isViewInWindow());
  hostStack_->present(screen, false);
  device_.runUntilIdle();
  EXPECT_TRUE(page.isProcessAlive());
  EXPECT_EQ(page.reloadCount(), 4);
}

TEST_F(ProcessDeathTest, ReloadsForNoOtherChangeOfTheAddress) {
  const auto screen = presentChecked();
  auto& page = pageOf(*screen);
  page.completeLoad();
  page.changeUrl("https://chat.example/#topic");
  page.changeUrl("about:blank");
  device_.runUntilIdle();
  EXPECT_EQ(page.reloadCount(), 0);
  EXPECT_EQ(screen->webView()->url(), "about:blank");
}

}  // namespace
}  // namespace orivex::testing
