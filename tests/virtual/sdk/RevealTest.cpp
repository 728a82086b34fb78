#include "ChatScreenTest.h"

#include "orivex/platform/ui/ContentViews.h"

namespace orivex::testing {
namespace {

class RevealTest : public ChatScreenTest {
 protected:
  /// Lets `act` happen at `time`.
  void at(double time, std::function<void()> act) {
    device_.mainQueue().asyncAfter(time - device_.mainQueue().now(), std::move(act));
  }
};

TEST_F(RevealTest, ShowsThePageOnceAndFadesThePlaceholder) {
  const struct {
    const char* what;
    std::vector<double> announced;
    std::vector<double> finished;
    double revealed;
  } cases[] = {
      {"the page announces itself", {1}, {}, 1.1},
      {"it only finishes", {}, {1}, 5},
      {"it finishes and then announces itself", {3}, {1}, 3.1},
      {"it announces itself and then finishes", {1}, {1.05}, 1.1},
      {"it announces itself late", {4.95}, {1}, 5},
      {"it announces itself twice", {1, 1.2}, {}, 1.1},
      {"it finishes twice", {}, {1, 1.5}, 5},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    const auto screen = present();
    const double start = device_.mainQueue().now();
    auto& page = pageOf(*screen);
    for (const double time : row.announced) at(start + time, [&] { page.post("initLoaded", "null"); });
    for (const double time : row.finished) at(start + time, [&] { page.finish(); });
    const auto placeholder = screen->loadView();
    log_.take();

    device_.advance(row.revealed - 0.001);
    EXPECT_FALSE(screen->isLoaded());
    EXPECT_EQ(screen->webView()->alpha(), 0);
    device_.advance(0.001);
    EXPECT_TRUE(screen->isLoaded());
    EXPECT_EQ(screen->webView()->alpha(), 1);
    EXPECT_EQ(placeholder->alpha(), 1);
    EXPECT_FALSE(placeholder->isUserInteractionEnabled()) << "a click during the fade is meant for the page";
    double before = 1;
    for (int hundredth = 0; hundredth < 39; ++hundredth) {
      device_.advance(0.01);
      EXPECT_LE(placeholder->alpha(), before);  // never back, whatever else asks for a reveal
      before = placeholder->alpha();
    }
    EXPECT_GT(before, 0);
    EXPECT_EQ(placeholder->superview(), screen->view().get());
    EXPECT_TRUE(engineOf(placeholder).isProcessAlive());
    device_.advance(0.01);
    EXPECT_FALSE(engineOf(placeholder).isProcessAlive()) << "memory for what nobody will see again";
    EXPECT_EQ(placeholder->alpha(), 0);
    EXPECT_EQ(placeholder->superview(), nullptr);

    for (int tenth = 0; tenth < 100; ++tenth) {
      device_.advance(0.1);
      EXPECT_EQ(placeholder->alpha(), 0);
      EXPECT_EQ(placeholder->superview(), nullptr);
    }
    EXPECT_EQ(log_.take("\"InitLoad\"").size(), row.announced.size());
    hostStack_->dismiss(false);
  }
}

TEST_F(RevealTest, AButtonLeadsBackUntilThen) {
  const auto screen = present();
  const auto placeholder = screen->loadView();
  const auto button = std::dynamic_pointer_cast<Button>(placeholder->subviews().back());
  ASSERT_TRUE(button);
  EXPECT_EQ(button->name(), "返回");
  EXPECT_EQ(button->frame(), (Rect{0, 8, 44, 44}));
  EXPECT_TRUE(placeholder->backgroundShapes()) << "nothing shows before the skeleton page";
  button->press();
  device_.advance(1);
  EXPECT_FALSE(screen->isViewInWindow());
}

TEST_F(RevealTest, RightToLeftItIsSeenInTheMirror) {
  const auto frames = [&] {
    const auto screen = present();
    const auto& placeholder = *screen->loadView();
    std::vector<Rect> all{placeholder.subviews().back()->frame()};
    for (const auto& shape : placeholder.backgroundShapes()({390, 844})) all.push_back(shape.frame);
    hostStack_->dismiss(false);
    return all;
  };
  auto expected = frames();
  for (auto& frame : expected) frame.x = 390 - frame.x - frame.width;
  device_.application().setRightToLeft(true);
  EXPECT_EQ(frames(), expected);
  EXPECT_EQ(expected.front(), (Rect{346, 8, 44, 44}));
}

TEST_F(RevealTest, KeepsNoScreenThatHasClosedBeforeIt) {
  for (const bool announced : {true, false}) {
    std::weak_ptr<OVKFApi> screen = present();
    auto& page = pageOf(*screen.lock());
    announced ? page.post("initLoaded", "null") : page.finish();
    device_.runUntilIdle();
    hostStack_->dismiss(false);
    EXPECT_TRUE(screen.expired());
    device_.advance(5);
    EXPECT_TRUE(device_.webEngines().engines().empty());
  }
}

}  // namespace
}  // namespace orivex::testing
