#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "RecordedScreen.h"

namespace orivex {
namespace {

class NavigationTest : public ScreenTest {
 protected:
  NavigationTest() { show(stack_); }

  std::shared_ptr<Screen> home_ = screen("H");
  std::shared_ptr<Screen> chat_ = screen("C");
  std::shared_ptr<Stack> stack_ = stack(home_);
};

TEST_F(NavigationTest, PushAndPopTellBothScreensInOrder) {
  stack_->pushViewController(chat_, true);
  EXPECT_EQ(course(), "-H +C");
  EXPECT_EQ(chat_->navigationController(), stack_.get());
  EXPECT_EQ(courseAfter(animation), "H- C+");
  EXPECT_TRUE(isShown(*chat_));
  EXPECT_FALSE(home_->isViewInWindow());
  stack_->popViewController(true);
  EXPECT_EQ(course(), "-C +H");
  EXPECT_EQ(courseAfter(animation), "C- H+");
  EXPECT_EQ(chat_->navigationController(), nullptr);
  EXPECT_FALSE(chat_->isViewInWindow());
  EXPECT_TRUE(isShown(*home_));
  stack_->popViewController(true);
  EXPECT_EQ(courseAfter(animation), "") << "the root stays";
}

TEST_F(NavigationTest, OnePoppedHalfwayOfItsArrivalGoesAndCanComeAgain) {
  for (const bool animated : {true, false}) {
    stack_->pushViewController(chat_, true);
    device_.advance(halfway);
    course();
    stack_->popViewController(animated);
    device_.advance(animation);
    EXPECT_EQ(course(), "-C +H C- H+") << animated;
    EXPECT_TRUE(isShown(*home_));
    EXPECT_FALSE(chat_->isViewInWindow());
    stack_->pushViewController(chat_, true);
    device_.advance(halfway);
    stack_->popViewController(true);
    stack_->pushViewController(chat_, true);
    device_.advance(animation);
    EXPECT_TRUE(isShown(*chat_));
    EXPECT_FALSE(home_->isViewInWindow());
    stack_->popViewController(false);
    course();
  }
}

TEST_F(NavigationTest, AStackThatIsNotShownLoadsNothingAndTellsNothing) {
  const auto unseen = stack(screen("U"));
  const auto pushed = screen("V");
  unseen->pushViewController(pushed, true);
  EXPECT_EQ(pushed->loads, 0);
  EXPECT_EQ(courseAfter(animation), "");
  window_.setRootViewController(unseen);
  EXPECT_EQ(course(), "-N -H N- H- +N +V N+ V+");
  EXPECT_TRUE(isShown(*pushed));
}

TEST_F(NavigationTest, AScreenIsInOnePlaceAtATime) {
  stack_->pushViewController(chat_, false);
  course();
  stack_->pushViewController(chat_, false);
  stack_->pushViewController(stack_, false);
  home_->present(chat_, false);
  EXPECT_EQ(course(), "");
  stack_->popViewController(false);
  EXPECT_EQ(stack_->topViewController(), home_);
}

TEST_F(NavigationTest, APushedScreenPresentsOverTheWholeStack) {
  const auto picker = screen("P");
  stack_->pushViewController(chat_, false);
  course();
  chat_->present(picker, true);
  EXPECT_EQ(courseAfter(animation), "-N -C +P N- C- P+");
  EXPECT_FALSE(isShown(*stack_));
  EXPECT_EQ(chat_->presentedViewController(), picker);
  // What is covered changes unseen, and appears when the cover goes.
  stack_->popViewController(true);
  EXPECT_EQ(courseAfter(animation), "");
  picker->dismiss(true);
  EXPECT_EQ(courseAfter(animation), "-P +N +H P- N+ H+");
  EXPECT_TRUE(isShown(*stack_));
  EXPECT_TRUE(isShown(*home_));
}

TEST_F(NavigationTest, AScreenThatBothDismissesAndPopsItselfGoesWithItsPresentedStack) {
  const auto root = screen("R");
  show(root);
  stack_->pushViewController(chat_, false);
  root->present(stack_, false);
  EXPECT_EQ(course(), "-R +N +C R- N+ C+");
  for (const bool animated : {true, false}) {
    chat_->dismiss(animated);
    chat_->navigationController()->popViewController(animated);
    device_.advance(animation);
    // Nothing of H, the screen under it: it never shows.
    EXPECT_EQ(course(), animated ? "-N -C +R N- R+ C-" : "-N -C +R N- C- R+");
    EXPECT_TRUE(isShown(*root));
    EXPECT_EQ(stack_->topViewController(), home_);
    stack_->pushViewController(chat_, false);
    root->present(stack_, false);
    EXPECT_EQ(course(), "-R +N +C R- N+ C+");
  }
}

TEST_F(NavigationTest, OnePushedWhileTheStackArrivesAppearsWithIt) {
  const auto root = screen("R");
  show(root);
  root->present(stack_, true);
  device_.advance(halfway);
  stack_->pushViewController(chat_, false);
  device_.advance(animation);
  EXPECT_EQ(course(), "-R +N +H -H +C H- C+ R- N+");
}

TEST_F(NavigationTest, TheBarLeavesRoomForTheStatusBar) {
  const double barBottom = 47 + NavigationController::barHeight;
  EXPECT_EQ(stack_->navigationBar()->frame(), (Rect{0, 0, 390, barBottom}));
  EXPECT_EQ(home_->view()->frame(), (Rect{0, 0, 390, 844})) << "a translucent bar lies over the screen";
  stack_->setNavigationBarTranslucent(false);
  EXPECT_EQ(home_->view()->frame(), (Rect{0, barBottom, 390, 844 - barBottom}));
  stack_->setNavigationBarHidden(true);
  EXPECT_EQ(home_->view()->frame(), (Rect{0, 0, 390, 844}));
}

}  // namespace
}  // namespace orivex
