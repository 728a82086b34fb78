#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

using ClosingTest = ChatScreenTest;

TEST_F(ClosingTest, SendsTheScreenAwayHoweverItIsShown) {
  using Show = std::function<void(const std::shared_ptr<OVKFApi>&)>;
  const std::pair<std::string, Show> places[] = {
      {"presented", [&](const auto& screen) { hostStack_->present(screen, false); }},
      {"pushed", [&](const auto& screen) { hostStack_->pushViewController(screen, false); }},
      {"pushed in a presented stack",
       [&](const auto& screen) {
         const auto stack = std::make_shared<NavigationController>(std::make_shared<ViewController>());
         hostStack_->present(stack, false);
         stack->pushViewController(screen, false);
       }},
      {"root of a presented stack",
       [&](const auto& screen) { hostStack_->present(std::make_shared<NavigationController>(screen), false); }},
  };
  for (const auto& [place, show] : places) {
    for (const bool byPage : {false, true}) {
      SCOPED_TRACE(place + (byPage ? ", by the page" : ", by the host"));
      std::weak_ptr<OVKFApi> closed;
      {
        const auto screen = started();
        show(screen);
        closed = screen;
        ASSERT_TRUE(screen->isViewInWindow());
        device_.runUntilIdle();
        byPage ? pageOf(*screen).post("goBack", R"({"ignored":[1]})") : screen->close();
        device_.runUntilIdle();
        EXPECT_TRUE(screen->isViewInWindow());
        device_.advance(0.349);
        EXPECT_TRUE(screen->isViewInWindow());  // animated
        device_.advance(0.001);
        EXPECT_FALSE(screen->isViewInWindow());
      }
      EXPECT_EQ(hostStack_->presentedViewController(), nullptr);
      EXPECT_EQ(hostStack_->topViewController(), hostScreen_);
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

  const auto covered = presentChecked();
  hostStack_->dismiss(false);
  covered->close();
  const auto another = push();
  covered->close();
  device_.advance(1);
  EXPECT_TRUE(another->isViewInWindow());
}

}  // namespace
}  // namespace orivex::testing
