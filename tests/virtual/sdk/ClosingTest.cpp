#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

enum class Shown { presented, pushed, pushedInPresentedStack, rootOfPresentedStack };
enum class Way { close, goBack, failedCheck };

class ClosingTest : public ChatScreenTest {
 protected:
  std::shared_ptr<OVKFApi> show(Shown how) {
    auto screen = started();
    switch (how) {
      case Shown::presented:
        hostStack_->present(screen, false);
        break;
      case Shown::pushed:
        hostStack_->pushViewController(screen, false);
        break;
      case Shown::pushedInPresentedStack: {
        const auto stack = std::make_shared<NavigationController>(std::make_shared<ViewController>());
        hostStack_->present(stack, false);
        stack->pushViewController(screen, false);
        break;
      }
      case Shown::rootOfPresentedStack:
        hostStack_->present(std::make_shared<NavigationController>(screen), false);
        break;
    }
    return screen;
  }

  void close(OVKFApi& screen, Way way) {
    device_.runUntilIdle();
    switch (way) {
      case Way::close:
        screen.close();
        break;
      case Way::goBack:
        pageOf(screen).post("goBack", R"({"ignored":[1]})");
        device_.runUntilIdle();
        break;
      case Way::failedCheck:
        device_.advance(2);
        break;
    }
  }
};

TEST_F(ClosingTest, SendsTheScreenAwayHoweverItIsShown) {
  for (const auto how : {Shown::presented, Shown::pushed, Shown::pushedInPresentedStack, Shown::rootOfPresentedStack}) {
    for (const auto way : {Way::close, Way::goBack, Way::failedCheck}) {
      SCOPED_TRACE(static_cast<int>(how) * 10 + static_cast<int>(way));
      device_.httpClient().setServer(
          [way](const UrlRequest&) { return VirtualReply::respond(way == Way::failedCheck ? 403 : 200); });
      std::weak_ptr<OVKFApi> closed;
      {
        const auto screen = show(how);
        closed = screen;
        ASSERT_TRUE(screen->isViewInWindow());
        close(*screen, way);
        EXPECT_TRUE(screen->isViewInWindow());
        device_.advance(0.349);
        EXPECT_TRUE(screen->isViewInWindow());  // animated
        device_.advance(0.001);
        EXPECT_FALSE(screen->isViewInWindow());
      }
      EXPECT_EQ(hostStack_->presentedViewController(), nullptr);
      EXPECT_EQ(hostStack_->viewControllers().size(), 1U);
      EXPECT_TRUE(hostScreen_->isViewInWindow());
      EXPECT_FALSE(hostStack_->view()->isHidden());
      device_.advance(20);
      EXPECT_TRUE(closed.expired());
    }
  }
}

TEST_F(ClosingTest, DoesNothingToAScreenThatDoesNotShow) {
  const auto neverShown = std::make_shared<OVKFApi>();
  neverShown->close();
  EXPECT_FALSE(neverShown->isViewLoaded());

  const auto covered = present();
  device_.runUntilIdle();
  hostStack_->dismiss(false);
  covered->close();
  const auto another = push();
  covered->close();
  device_.advance(1);
  EXPECT_TRUE(another->isViewInWindow());
}

TEST_F(ClosingTest, GoingBackTwiceTakesOneScreenAway) {
  const auto below = push();
  const auto top = push();
  device_.runUntilIdle();
  pageOf(*top).post("goBack", "null");
  pageOf(*top).post("goBack", "null");
  device_.advance(1);
  EXPECT_EQ(hostStack_->topViewController(), below);
}

}  // namespace
}  // namespace orivex::testing
