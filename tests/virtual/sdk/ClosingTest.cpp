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
  const struct {
    const char* what;
    int status;  // of the page check
    std::function<void(OVKFApi&)> close;
  } ways[] = {
      {"close", 200, [](OVKFApi& screen) { screen.close(); }},
      {"goBack", 200,
       [&](OVKFApi& screen) {
         pageOf(screen).post("goBack", R"({"ignored":[1]})");
         device_.runUntilIdle();
       }},
      {"failed check", 403, [&](OVKFApi&) { device_.advance(2); }},
  };
  for (const auto& [place, show] : places) {
    for (const auto& way : ways) {
      SCOPED_TRACE(place + ", " + way.what);
      device_.httpClient().setServer([&way](const UrlRequest&) { return VirtualReply::respond(way.status); });
      std::weak_ptr<OVKFApi> closed;
      {
        const auto screen = started();
        show(screen);
        closed = screen;
        ASSERT_TRUE(screen->isViewInWindow());
        device_.runUntilIdle();
        way.close(*screen);
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
