#include "DeviceTest.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/base/Text.h"

namespace orivex::testing {
namespace {

class TimedMessageTest : public DeviceTest {
 protected:
  void at(double time, std::function<void()> act) { device_.mainQueue().asyncAfter(time, std::move(act)); }
};

TEST_F(TimedMessageTest, ShowsInItsTurnAndCompletesAfterItIsDismissed) {
  bool completed = false;
  OVKFApiHelper::showMessage("text", 2, [&] {
    EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);
    completed = true;
  });
  EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);
  device_.runUntilIdle();
  EXPECT_EQ(device_.progressOverlay().shown(),
            (VirtualProgressOverlay::Panel{VirtualProgressOverlay::Kind::info, "text"}));
  device_.advance(1.999);
  EXPECT_FALSE(completed);
  device_.advance(0.001);
  EXPECT_TRUE(completed);
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows text", "2.0 hides text"}));
}

TEST_F(TimedMessageTest, IsDismissedByWhicheverTimerComesFirst) {
  Lines completions;
  const auto show = [&](const char* text, double seconds) {
    OVKFApiHelper::showMessage(
        text, seconds, [&, text] { completions.push_back(doubleText(device_.mainQueue().now()) + " " + text); });
  };
  at(0, [&] { show("first", 3); });
  at(1, [&] { show("second", 3); });
  at(3.5, [&] { show("third", 3); });
  device_.advance(10);
  EXPECT_EQ(overlayStory(),
            (Lines{"0.0 shows first", "1.0 shows second", "3.0 hides second", "3.5 shows third", "4.0 hides third"}));
  EXPECT_EQ(completions, (Lines{"3.0 first", "4.0 second", "6.5 third"}));
}

TEST_F(TimedMessageTest, MayBeAskedForOnAnyThread) {
  bool completedOnMain = false;
  device_.mainQueue().global([&] {
    OVKFApiHelper::showMessage("from a worker", 3, [&] { completedOnMain = device_.mainQueue().isMainThread(); });
  });
  device_.advance(10);
  EXPECT_TRUE(completedOnMain);
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows from a worker", "3.0 hides from a worker"}));
}

}  // namespace
}  // namespace orivex::testing
