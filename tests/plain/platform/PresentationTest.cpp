#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "RecordedScreen.h"

namespace orivex {
namespace {

class PresentationTest : public ScreenTest {
 protected:
  PresentationTest() { show(root_); }

  std::shared_ptr<Screen> root_ = screen("R");
  std::shared_ptr<Screen> chat_ = screen("C");
};

TEST_F(PresentationTest, BothScreensHearOfItInOrderAndTheCompletionComesLast) {
  root_->present(chat_, true, [this] { course_ += " done"; });
  EXPECT_EQ(course(), "-R +C");
  EXPECT_TRUE(chat_->isViewInWindow());
  EXPECT_EQ(courseAfter(animation), "R- C+ done");
  EXPECT_TRUE(isShown(*chat_));
  EXPECT_FALSE(isShown(*root_));
  EXPECT_EQ(chat_->presentingViewController(), root_.get());
  chat_->dismiss(true, [this] { course_ += " done"; });
  EXPECT_EQ(course(), "-C +R");
  EXPECT_EQ(courseAfter(animation), "C- R+ done");
  EXPECT_FALSE(chat_->isViewInWindow());
  EXPECT_TRUE(isShown(*root_));
  EXPECT_EQ(root_->presentedViewController(), nullptr);
  EXPECT_EQ(chat_->loads, 1);
}

TEST_F(PresentationTest, OneDismissedHalfwayOfItsArrivalGoesAndCanComeAgain) {
  for (const bool animated : {true, false}) {
    root_->present(chat_, true);
    device_.advance(halfway);
    course();
    chat_->dismiss(animated);
    device_.advance(animation);
    EXPECT_EQ(course(), "-C +R C- R+");
    EXPECT_FALSE(chat_->isViewInWindow());
    EXPECT_TRUE(isShown(*root_));
    root_->present(chat_, true);
    EXPECT_EQ(courseAfter(animation), "-R +C R- C+");
    EXPECT_TRUE(isShown(*chat_));
    root_->dismiss(false);
  }
}

TEST_F(PresentationTest, AScreenThatIsShownOrLeavingIsNotPresentedAgain) {
  root_->present(chat_, false);
  course();
  chat_->present(chat_, false);
  chat_->present(root_, false);
  root_->present(screen("O"), false);
  EXPECT_EQ(course(), "");
  chat_->dismiss(true);
  device_.advance(halfway);
  root_->present(chat_, true);
  EXPECT_EQ(courseAfter(animation), "-C +R C- R+");
  EXPECT_FALSE(chat_->isViewInWindow());
  chat_->present(screen("O"), false);
  EXPECT_EQ(course(), "") << "presented by a screen that is in no window";
}

TEST_F(PresentationTest, AnotherMayComeWhileOneIsLeaving) {
  root_->present(chat_, false);
  chat_->dismiss(true);
  device_.advance(halfway);
  const auto other = screen("O");
  root_->present(other, true);
  device_.advance(animation);
  EXPECT_TRUE(isShown(*other));
  EXPECT_FALSE(chat_->isViewInWindow());
  EXPECT_FALSE(isShown(*root_));
}

TEST_F(PresentationTest, OfSeveralOnTopOfEachOtherOnlyTheUppermostHearsOfTheEnd) {
  auto picker = screen("P");
  root_->present(chat_, false);
  chat_->present(picker, false);
  EXPECT_EQ(course(), "-R +C R- C+ -C +P C- P+");
  chat_->dismiss(false);
  EXPECT_EQ(course(), "-P +C P- C+") << "it takes away what it presents";
  EXPECT_TRUE(isShown(*chat_));
  chat_->present(picker, false);
  course();
  const std::weak_ptr<Screen> lives[] = {chat_, picker};
  root_->dismiss(true);
  EXPECT_EQ(courseAfter(animation), "-P +R P- R+");
  EXPECT_FALSE(chat_->isViewInWindow());
  EXPECT_EQ(chat_->presentedViewController(), nullptr);
  root_->present(chat_, false);
  EXPECT_TRUE(isShown(*chat_)) << "a screen that was covered comes back visible";
  root_->dismiss(false);
  chat_.reset();
  picker.reset();
  for (const auto& life : lives) EXPECT_TRUE(life.expired());
}

TEST_F(PresentationTest, ScreensAreKeptWhileTheyMoveAndNoLonger) {
  const std::weak_ptr<Screen> life = chat_;
  const auto weakView = std::weak_ptr<View>(chat_->view());
  root_->present(chat_, true);
  chat_.reset();
  device_.advance(halfway);
  ASSERT_FALSE(life.expired());
  root_->dismiss(true);
  EXPECT_FALSE(life.expired());
  device_.advance(animation);
  EXPECT_TRUE(life.expired());
  EXPECT_TRUE(weakView.expired());
}

}  // namespace
}  // namespace orivex
