#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

class TwoWindowsTest : public ChatScreenTest {
 protected:
  VirtualProgressOverlay& overlay() { return device_.progressOverlay(); }
  std::shared_ptr<Window> first() { return device_.application().window(); }
};

TEST_F(TwoWindowsTest, AScreenBelongsToTheWindowThatShowsItAndNotToTheFirst) {
  const auto screen = presentInSecond();
  EXPECT_EQ(screen->previousViewSnapshot(), nullptr) << "the picture of another window lies behind it";
  EXPECT_TRUE(screen->view()->gestures().empty());
  EXPECT_EQ(screen->webView()->frame(), (Rect{0, 0, 300, 547}));  // the scene's status bar, and no inset

  const auto here = present();
  const auto behind = std::dynamic_pointer_cast<VirtualSnapshot>(here->previousViewSnapshot());
  ASSERT_NE(behind, nullptr);
  EXPECT_EQ(behind->original(), hostStack_->view());
}

TEST_F(TwoWindowsTest, WhatAScreenSaysIsSaidInItsOwnWindow) {
  const auto one = present();
  const auto two = presentInSecond();
  device_.runUntilIdle();
  pageOf(*one).failProvisional("unreachable");
  device_.runUntilIdle();
  EXPECT_EQ(overlay().shownOver(), first());
  pageOf(*two).failProvisional("unreachable");
  device_.runUntilIdle();
  EXPECT_EQ(overlay().shownOver(), second_);
  device_.application().scene()->removeWindow(*second_);
  overlay().forgetHistory();
  pageOf(*two).failProvisional("unreachable");
  device_.runUntilIdle();
  EXPECT_EQ(overlayStory(), Lines{}) << "the message of a window that is gone shows elsewhere";
}

}  // namespace
}  // namespace orivex::testing
