#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {
namespace {

class VirtualTime : public ::testing::Test {
 protected:
  VirtualMainQueue& queue() { return device_.mainQueue(); }

  VirtualDevice device_;
};

TEST_F(VirtualTime, TenTenthsOfASecondAreOneSecond) {
  bool ran = false;
  queue().asyncAfter(1.0, [&] { ran = true; });
  for (int step = 0; step < 9; ++step) queue().advance(0.1);
  EXPECT_FALSE(ran);
  queue().advance(0.1);
  EXPECT_TRUE(ran);
  EXPECT_EQ(queue().now(), 1.0);
}

TEST_F(VirtualTime, ManyThreadsMayQueueWhileTheMainThreadRuns) {
  int ran = 0;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int count = 0; count < 4; ++count) {
    threads.emplace_back([&] {
      for (int task = 0; task < 500; ++task) queue().asyncAfter(0.001 * (task % 7), [&] { ++ran; });
    });
  }
  while (!queue().advanceUntil([&] { return ran == 2000; }, 0.01)) std::this_thread::yield();
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(queue().pendingCount(), 0U);
}

using VirtualTimeDeathTest = VirtualTime;

TEST_F(VirtualTimeDeathTest, WorkThatNeverLetsTimePassIsTold) {
  std::function<void()> again = [&] { queue().async(again); };
  again();
  EXPECT_DEATH(queue().runUntilIdle(), "work keeps queueing work without time passing");
}

TEST_F(VirtualTimeDeathTest, TouchingTheMainThreadsThingsFromGlobalWorkIsTold) {
  queue().global([&] { device_.platform().progressOverlay.showInfo("no"); });
  EXPECT_DEATH(queue().runUntilIdle(), "ProgressOverlay::show was called off the main thread");
  queue().discardPending();
  queue().global([&] { device_.platform().userDefaults.boolForKey("enable_eruda"); });
  EXPECT_DEATH(queue().runUntilIdle(), "UserDefaults::boolForKey was called off the main thread");
  queue().discardPending();
  EXPECT_DEATH(std::thread([&] { queue().advance(1); }).join(), "advance was called off the main thread");
}

}  // namespace
}  // namespace orivex::testing
