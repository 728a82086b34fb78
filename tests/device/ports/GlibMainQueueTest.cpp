#include <atomic>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/Processes.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 10;

std::ptrdiff_t threads() {
  return entriesOf("/proc/self/task");
}

void sleep(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

TEST(GlibMainQueueTest, ABusyLoopRunsWhatBecameDueByDueTimeNotByCall) {
  GlibMainQueue queue;
  std::string order;
  queue.asyncAfter(0.02, [&] { order += 'd'; });
  queue.asyncAfter(0.01, [&] { order += 'b'; });
  queue.asyncAfter(-1, [&] { order += 'a'; });
  const auto timer = queue.repeat(0.015, [&] { order += 'c'; });
  sleep(0.03);
  queue.async([&] { order += 'e'; });
  EXPECT_TRUE(wait([&] { return order.size() >= 5; }, patience));
  EXPECT_EQ(order.substr(0, 5), "abcde");
}

TEST(GlibMainQueueTest, TasksOfManyThreadsAllArriveOnTheMainThreadEachThreadsInItsOrder) {
  GlibMainQueue queue;
  constexpr int perThread = 2000;
  std::vector<std::thread> senders;
  std::vector<int> next(4, 0);
  bool inOrder = true;
  for (std::size_t sender = 0; sender < next.size(); ++sender) {
    senders.emplace_back([&, sender] {
      for (int index = 0; index < perThread; ++index) {
        queue.asyncAfter(0,
                         [&, sender, index] { inOrder = inOrder && queue.isMainThread() && next[sender]++ == index; });
      }
    });
  }
  EXPECT_TRUE(wait([&] { return next == std::vector<int>(4, perThread); }, patience));
  EXPECT_TRUE(inOrder);
  for (auto& sender : senders) sender.join();
}

TEST(GlibMainQueueTest, ATaskThatRunsALoopOfItsOwnDoesNotStopTheOthers) {
  GlibMainQueue queue;
  bool inner = false;
  bool outer = false;
  queue.async([&] {
    queue.async([&] { inner = true; });
    outer = wait([&] { return inner; }, patience);
  });
  EXPECT_TRUE(wait([&] { return inner && outer; }, patience));
}

TEST(GlibMainQueueTest, ATaskThatThrowsIsLoggedAndTheNextOnesRunOnEveryThread) {
  GlibMainQueue queue;
  const LogLines log;
  const auto fail = [] { throw std::out_of_range("beyond the last photo"); };
  int ran = 0;
  queue.async(fail);
  queue.async([&] { ++ran; });
  for (int index = 0; index < 8; ++index) queue.global(fail);
  queue.global([&] { queue.async([&] { ++ran; }); });
  EXPECT_TRUE(wait([&] { return ran == 2; }, patience));
  EXPECT_TRUE(wait([&] { return log.count("beyond the last photo") == 9; }, patience));
}

TEST(GlibMainQueueTest, BlockingWorkIsSharedByFewThreadsThatEndWithTheQueue) {
  const auto threadsBefore = threads();
  std::atomic<int> running = 0;
  std::atomic<int> mostRunning = 0;
  int done = 0;
  {
    GlibMainQueue queue;
    for (int index = 0; index < 40; ++index) {
      queue.global([&] {
        EXPECT_FALSE(queue.isMainThread());
        const int now = ++running;
        for (int most = mostRunning; most < now && !mostRunning.compare_exchange_weak(most, now);) {
        }
        sleep(0.005);
        --running;
        queue.async([&] { ++done; });
      });
    }
    EXPECT_TRUE(wait([&] { return done == 40; }, patience));
  }
  EXPECT_GE(mostRunning, 2) << "work that blocks must not wait for other work that blocks";
  EXPECT_LE(mostRunning, 8);
  EXPECT_TRUE(wait([&] { return threads() <= threadsBefore; }, patience));
}

TEST(GlibMainQueueTest, DestroyingItDropsWhatWaitsAndWaitsForWhatRuns) {
  const auto held = std::make_shared<int>();
  std::atomic<bool> begun = false;
  std::atomic<bool> ended = false;
  std::atomic<int> dropped = 0;
  {
    GlibMainQueue queue;
    queue.async([&, held] { ++dropped; });
    queue.asyncAfter(0.001, [&, held] { ++dropped; });
    auto timer = queue.repeat(0.001, [&, held] { ++dropped; });
    queue.global([&, held] {
      begun = true;
      sleep(0.05);
      queue.async([&, held] { ++dropped; });
      queue.global([&, held] { ++dropped; });
      ended = true;
    });
    while (!begun) std::this_thread::yield();
  }
  EXPECT_TRUE(ended);
  pass(0.02);
  EXPECT_EQ(dropped, 0);
  EXPECT_EQ(held.use_count(), 1) << "a dropped task was not destroyed";
}

}  // namespace
}  // namespace orivex::gtk
