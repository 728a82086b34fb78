#include <memory>
#include <string>
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

TEST_F(VirtualTime, RunUntilIdleRunsWhatIsQueuedForNowAndMovesNothing) {
  std::string order;
  queue().async([&] {
    order += 'a';
    queue().async([&] { order += 'b'; });
    queue().asyncAfter(0.001, [&] { order += 'c'; });
  });
  queue().runUntilIdle();
  EXPECT_EQ(order, "ab");
  EXPECT_EQ(queue().now(), 0.0);
  EXPECT_EQ(queue().pendingCount(), 1U);
  EXPECT_EQ(queue().nextDue(), 0.001);
}

TEST_F(VirtualTime, ATimerWaitsInTheQueueUntilItsHandleGoes) {
  int ticks = 0;
  auto timer = queue().repeat(1.0, [&] { ++ticks; });
  queue().advance(3.5);
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(queue().nextDue(), 4.0);
  timer.reset();
  EXPECT_EQ(queue().pendingCount(), 0U);
  EXPECT_EQ(queue().nextDue(), std::nullopt);
  timer = queue().repeat(0, [&] { ++ticks; });
  queue().advance(0.01);
  EXPECT_EQ(ticks, 13) << "an interval of none is a millisecond";
  timer = queue().repeat(1.0, [&] { timer.reset(); });
  queue().advance(1);
  EXPECT_EQ(queue().pendingCount(), 0U) << "a timer that stopped itself waits for nothing";
}

TEST_F(VirtualTime, TasksAndTimersMayOutliveTheirQueue) {
  const auto held = std::make_shared<int>(0);
  std::unique_ptr<Timer> timer;
  {
    VirtualMainQueue other;
    timer = other.repeat(1, [held] {});
    other.async([held] {});
    other.advance(1);
    other.async([held] {});
  }
  timer.reset();
  EXPECT_EQ(held.use_count(), 1);
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

TEST_F(VirtualTime, ReducedMotionShowsTheLastStepOnly) {
  device_.animator().setReducedMotion(true);
  std::vector<double> steps;
  bool done = false;
  device_.animator().animate(
      0.4, [&](double progress) { steps.push_back(progress); }, [&] { done = true; });
  EXPECT_TRUE(steps.empty());
  queue().runUntilIdle();
  EXPECT_EQ(steps, std::vector{1.0});
  EXPECT_TRUE(done);
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
