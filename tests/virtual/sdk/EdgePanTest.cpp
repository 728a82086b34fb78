#include "ChatScreenTest.h"

#include "orivex/platform/ui/ScreenEdgePanGesture.h"

namespace orivex::testing {
namespace {

using State = ScreenEdgePanGesture::State;

class EdgePanTest : public ChatScreenTest {
 protected:
  static constexpr double width = 390;

  static ScreenEdgePanGesture& panOf(OVKFApi& screen) { return *screen.view()->gestures().at(0); }
};

TEST_F(EdgePanTest, MovesThePageAndGoesBackBeyondThreeTenths) {
  const struct {
    const char* what;
    double dragged;  // points at the release
    State end;
    bool back;
  } cases[] = {
      {"to the left", -50, State::ended, false},
      {"a little", 60, State::ended, false},
      {"exactly three tenths", 0.3 * width, State::ended, false},
      {"just beyond", 0.3 * width + 0.001, State::ended, true},
      {"taken away early", 60, State::cancelled, false},
      {"taken away late", 300, State::cancelled, true},
  };
  for (const auto& row : cases) {
    for (const bool presented : {true, false}) {
      SCOPED_TRACE(std::string(row.what) + (presented ? ", presented" : ", pushed"));
      const auto screen = presented ? present() : push();
      device_.runUntilIdle();
      const auto& page = *screen->webView();
      auto& snapshot = *screen->previousViewSnapshot();
      auto& pan = panOf(*screen);
      pan.report(State::began, 0);
      EXPECT_EQ(page.transform(), Translation{});
      pan.report(State::changed, row.dragged / 2);
      EXPECT_EQ(page.transform(), (Translation{row.dragged / 2, 0}));
      snapshot.setTransform({5, 0});
      pan.report(State::changed, row.dragged);
      EXPECT_EQ(page.transform(), (Translation{row.dragged, 0}));
      EXPECT_EQ(screen->loadView()->transform(), page.transform()) << "what covers the page must not stay behind";
      EXPECT_EQ(snapshot.transform(), Translation{});
      EXPECT_EQ(page.castsShadow(), row.dragged > 0) << "no edge between the page and what is behind it";
      pan.report(row.end, row.dragged);

      device_.advance(0.299);
      EXPECT_TRUE(screen->isViewInWindow());
      EXPECT_NE(page.transform(), (Translation{row.back ? width : row.dragged + 1, 0}));
      device_.advance(0.001);
      EXPECT_EQ(page.transform(), (Translation{row.back ? width : 0, 0}));
      EXPECT_EQ(page.castsShadow(), row.back);
      EXPECT_EQ(snapshot.transform(), Translation{});
      EXPECT_EQ(screen->isViewInWindow(), !row.back);  // gone at once: the slide was the animation
      EXPECT_EQ(hostStack_->presentedViewController() == nullptr && hostStack_->topViewController() == hostScreen_,
                row.back);
      device_.advance(1);
      EXPECT_EQ(screen->isViewInWindow(), !row.back);
      hostStack_->dismiss(false);
      hostStack_->popViewController(false);
    }
  }
}

TEST_F(EdgePanTest, AFingerTakesOverAPageThatSettlesButNoneThatLeaves) {
  const auto screen = push();
  const auto& page = *screen->webView();
  auto& pan = panOf(*screen);
  pan.report(State::changed, 100);
  pan.report(State::ended, 100);
  device_.advance(0.1);
  pan.report(State::changed, 40);
  device_.advance(1);
  EXPECT_EQ(page.transform(), (Translation{40, 0})) << "the slide goes on under the finger";
  pan.report(State::changed, 300);
  pan.report(State::ended, 300);
  device_.advance(0.2);
  pan.report(State::changed, 10);
  pan.report(State::cancelled, 10);
  device_.advance(0.1);
  EXPECT_FALSE(screen->isViewInWindow());
  EXPECT_EQ(hostStack_->topViewController(), hostScreen_);
}

TEST_F(EdgePanTest, AScreenThatWasSwipedAwayComesBackWhole) {
  const auto screen = present();
  panOf(*screen).report(State::ended, 300);
  device_.advance(1);
  ASSERT_FALSE(screen->isViewInWindow());
  hostStack_->present(screen, false);
  EXPECT_EQ(screen->webView()->transform(), Translation{});
  panOf(*screen).report(State::changed, 300);
  panOf(*screen).report(State::ended, 300);
  device_.advance(1);
  EXPECT_FALSE(screen->isViewInWindow());
}

}  // namespace
}  // namespace orivex::testing
