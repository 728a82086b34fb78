#include <algorithm>

#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

using LifeCycleTest = ChatScreenTest;

TEST_F(LifeCycleTest, OwnsTheHostsChromeWhilePushed) {
  const struct {
    const char* what;
    bool toolbarHidden;
    bool hasTabBar;
    bool tabBarHidden;
  } cases[] = {
      {"bars shown", false, true, false},
      {"the host had its toolbar hidden", true, true, false},
      {"the host had both hidden", true, true, true},
      {"no tab bar", false, false, false},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    const auto tabBar = row.hasTabBar ? std::make_shared<View>() : nullptr;
    if (tabBar) tabBar->setHidden(row.tabBarHidden);
    hostStack_->setHostTabBar(tabBar);
    hostStack_->toolbar()->setHidden(row.toolbarHidden);
    hostStack_->setNavigationBarTranslucent(true);

    const auto screen = started();
    hostStack_->pushViewController(screen, true);
    const auto ownsTheDisplay = [&] {
      return hostStack_->navigationBar()->isHidden() && hostStack_->toolbar()->isHidden() &&
             (!tabBar || tabBar->isHidden());
    };
    const auto gaveItBack = [&] {
      return !hostStack_->navigationBar()->isHidden() && hostStack_->toolbar()->isHidden() == row.toolbarHidden &&
             (!tabBar || tabBar->isHidden() == row.tabBarHidden);
    };
    EXPECT_TRUE(ownsTheDisplay());  // before it slides in
    device_.advance(1);
    EXPECT_EQ(screen->view()->frame(), (Rect{0, 0, 390, 844}));

    const auto editor = std::make_shared<ViewController>();
    hostStack_->pushViewController(editor, true);
    EXPECT_TRUE(gaveItBack());
    device_.advance(1);
    hostStack_->popViewController(true);
    EXPECT_TRUE(ownsTheDisplay());
    device_.advance(1);

    hostStack_->popViewController(true);
    EXPECT_TRUE(gaveItBack());
    device_.advance(1);
    EXPECT_TRUE(gaveItBack());
  }
}

TEST_F(LifeCycleTest, GivesTheChromeBackOnceHoweverItLeaves) {
  const auto cover = [](NavigationController& stack) { stack.present(std::make_shared<ViewController>(), true); };
  const struct {
    const char* what;
    std::function<void(VirtualDevice&, NavigationController&, OVKFApi&)> leave;
  } cases[] = {
      {"half-way in",
       [](auto& device, auto& stack, auto&) {
         device.advance(0.1);
         stack.popViewController(true);
       }},
      {"closed twice",
       [](auto& device, auto&, auto& chat) {
         device.advance(1);
         chat.close();
         device.advance(0.1);
         chat.close();
       }},
      {"closed while it slides away",
       [](auto& device, auto& stack, auto& chat) {
         device.advance(1);
         stack.popViewController(true);
         device.advance(0.1);
         chat.close();
       }},
      {"covered, then popped underneath",
       [&](auto& device, auto& stack, auto&) {
         device.advance(1);
         cover(stack);
         device.advance(0.1);  // on its way up
         stack.popViewController(true);
         device.advance(1);
         stack.dismiss(true);
       }},
      {"covered and uncovered half-way",
       [&](auto& device, auto& stack, auto& chat) {
         device.advance(1);
         cover(stack);
         device.advance(0.1);
         stack.dismiss(true);
         device.advance(1);
         EXPECT_TRUE(stack.navigationBar()->isHidden()) << "it is back";
         EXPECT_TRUE(stack.toolbar()->isHidden());
         chat.close();
       }},
      {"the host shows something else",
       [](auto& device, auto& stack, auto&) {
         device.application().window()->setRootViewController(std::make_shared<ViewController>());
         EXPECT_FALSE(stack.navigationBar()->isHidden());
         stack.popViewController(true);
       }},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    VirtualDevice device;
    const auto first = std::make_shared<ViewController>();
    const auto stack = std::make_shared<NavigationController>(first);
    device.application().window()->setRootViewController(stack);
    stack->toolbar()->setHidden(false);
    const auto second = std::make_shared<ViewController>();
    stack->pushViewController(second, false);
    std::weak_ptr<OVKFApi> left;
    {
      const auto chat = started();
      left = chat;
      stack->pushViewController(chat, true);
      row.leave(device, *stack, *chat);
    }
    device.advance(20);
    EXPECT_EQ(stack->topViewController(), second);
    EXPECT_FALSE(stack->navigationBar()->isHidden());
    EXPECT_FALSE(stack->toolbar()->isHidden());
    EXPECT_GE(device.application().endEditingCount(), 1) << "the keyboard must go with the chat";
    EXPECT_TRUE(left.expired());
  }
}

TEST_F(LifeCycleTest, FollowsWhatSurroundsTheWindowWhileItShows) {
  auto& application = device_.application();
  const auto pushed = push();
  const auto covering = present();
  device_.advance(1);
  application.window()->setSafeAreaInsets({.top = 20, .left = 0, .bottom = 10, .right = 0});
  application.setStatusBarHeight(20);
  for (const auto& screen : {pushed, covering}) {
    EXPECT_EQ(screen->webView()->frame().height, screen->view()->frame().height + 20 + 10);
    EXPECT_EQ(screen->loadView()->frame().y, 20);
  }
  hostStack_->dismiss(false);
  hostStack_->popViewController(false);
  EXPECT_EQ(hostStack_->navigationBar()->frame().height, 20 + NavigationController::barHeight);
  application.setStatusBarHeight(30);
  EXPECT_EQ(hostStack_->navigationBar()->frame().height, 30 + NavigationController::barHeight);
}

TEST_F(LifeCycleTest, LeavesTheChromeAloneWhenPresented) {
  hostStack_->toolbar()->setHidden(false);
  present();
  EXPECT_FALSE(hostStack_->navigationBar()->isHidden());
  EXPECT_EQ(hostScreen_->view()->frame().y, 0) << "the bar is translucent";
  EXPECT_FALSE(hostStack_->toolbar()->isHidden());
}

TEST_F(LifeCycleTest, EndsEditingAsItLeavesAndWhenItIsCovered) {
  const auto& application = device_.application();
  const auto screen = push();
  EXPECT_EQ(application.endEditingCount(), 0);
  hostStack_->present(std::make_shared<ViewController>(), true);
  EXPECT_EQ(application.endEditingCount(), 1);
  EXPECT_EQ(application.lastEndedEditing(), screen->view());
  device_.advance(1);
  hostStack_->dismiss(true);
  device_.advance(1);
  hostStack_->popViewController(true);
  EXPECT_EQ(application.endEditingCount(), 2);
}

TEST_F(LifeCycleTest, FollowsTheApplicationAsLongAsItIsKept) {
  auto& application = device_.application();
  const auto screen = present();
  log_.take();
  application.becomeActive();
  EXPECT_EQ(log_.take(), Lines{"\"App did become active\""});
  application.resignActive();
  EXPECT_EQ(log_.take("\"App"), Lines{"\"App will resign active\""});

  hostStack_->dismiss(false);
  device_.advance(20);
  application.becomeActive();
  EXPECT_EQ(log_.take("\"App"), Lines{"\"App did become active\""});  // off the screen, but still kept by its host
}

TEST_F(LifeCycleTest, IsNotKeptByItsPageWhichThenServesNobody) {
  auto screen = present();
  screen->dismiss(false);
  device_.advance(60);
  const auto page = screen->webView();
  const std::weak_ptr<OVKFApi> life = screen;
  screen.reset();
  EXPECT_TRUE(life.expired());
  log_.take();
  engineOf(page).completeLoad();
  engineOf(page).post("openUrl", R"("https://other.example")");
  engineOf(page).openWindow("https://other.example");
  device_.advance(60);
  EXPECT_EQ(log_.take(), Lines{});
  EXPECT_TRUE(device_.application().openedUrls().empty());
}

TEST_F(LifeCycleTest, LeavesNothingBehindAfterAThousandScreens) {
  device_.webEngines().setLoader([](VirtualWebEngine& engine) {
    if (!engine.loads().empty()) engine.completeLoad();
  });
  std::vector<std::weak_ptr<OVKFApi>> screens;
  std::size_t mostPending = 0;
  for (int i = 0; i < 1000; ++i) {
    device_.httpClient().setServer([i](const UrlRequest&) { return VirtualReply::respond(i % 4 == 3 ? 404 : 200); });
    const bool pushed = i % 2 == 1;
    screens.push_back(pushed ? push() : present());
    device_.advance(i % 3 == 0 ? 0.0 : 3.0);  // before, while and after the page loads
    if (const auto screen = screens.back().lock(); screen && i % 5 == 0) pageOf(*screen).die();
    if (pushed) {
      hostStack_->popViewController(false);
    } else {
      hostStack_->dismiss(false);
    }
    mostPending = std::max(mostPending, device_.mainQueue().pendingCount());
  }
  EXPECT_LT(mostPending, 100U);  // what waits is the last seconds', not every screen's
  device_.advance(30);
  EXPECT_EQ(device_.webEngines().madeCount(), 2000U);
  EXPECT_TRUE(device_.webEngines().engines().empty());
  EXPECT_EQ(device_.mainQueue().pendingCount(), 0U);
  EXPECT_EQ(std::count_if(screens.begin(), screens.end(), [](const auto& screen) { return screen.expired(); }), 1000);
  log_.take();
  device_.application().resignActive();
  EXPECT_EQ(log_.take(), Lines{});
}

}  // namespace
}  // namespace orivex::testing
