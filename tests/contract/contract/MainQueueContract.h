#pragma once

#include <atomic>
#include <memory>

#include "contract/Fixture.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::contract {

template <DeviceFixture Fixture>
class MainQueueContract : public Suite<Fixture> {
 protected:
  MainQueue& queue() { return this->fixture_.platform().mainQueue; }
};
TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, RunsByDueTimeAndThenInOrderOfTheCalls) {
  std::string order;
  const auto note = [&order](char letter) { return [&order, letter] { order += letter; }; };
  this->queue().asyncAfter(0.08, note('f'));
  this->queue().asyncAfter(0.04, note('d'));
  this->queue().async(note('a'));
  this->queue().asyncAfter(0, note('b'));
  this->queue().asyncAfter(-1, note('c'));
  this->queue().asyncAfter(0.04, note('e'));
  EXPECT_EQ(order, "") << "ran inside the call that queued it";
  EXPECT_TRUE(this->wait([&] { return order.size() == 6; }));
  EXPECT_EQ(order, "abcdef");
}

TYPED_TEST_P(MainQueueContract, ATaskQueuedByATaskRunsAfterItAndAfterThoseBefore) {
  std::string order;
  this->queue().async([&] {
    this->queue().async([&] { order += 'c'; });
    order += 'a';
  });
  this->queue().async([&] { order += 'b'; });
  EXPECT_TRUE(this->wait([&] { return order.size() == 3; }));
  EXPECT_EQ(order, "abc");
}

TYPED_TEST_P(MainQueueContract, ATimerTicksFirstAfterOneIntervalAndStopsWithItsHandle) {
  const double start = this->queue().now();
  std::vector<double> ticks;
  auto timer = this->queue().repeat(0.02, [&] { ticks.push_back(this->queue().now() - start); });
  EXPECT_TRUE(this->wait([&] { return ticks.size() >= 3; }));
  timer.reset();
  const auto count = ticks.size();
  for (std::size_t index = 0; index < count; ++index) {
    EXPECT_GE(ticks[index], 0.02 * static_cast<double>(index + 1) - 1e-9);
  }
  this->pass(0.1);
  EXPECT_EQ(ticks.size(), count);
}

TYPED_TEST_P(MainQueueContract, ATimerMayBeStoppedInItsOwnTick) {
  // Held by the tick only: what the tick captured must outlast the call.
  const auto witness = std::make_shared<int>(0);
  std::weak_ptr<int> life = witness;
  std::unique_ptr<Timer> timer;
  timer = this->queue().repeat(0.01, [&timer, witness] {
    timer.reset();
    ++*witness;
  });
  EXPECT_TRUE(this->wait([&] { return *witness > 0; }));
  this->pass(0.05);
  EXPECT_EQ(*witness, 1);
  EXPECT_EQ(life.use_count(), 1) << "the stopped timer still holds its tick";
}

TYPED_TEST_P(MainQueueContract, GlobalWorkIsNotOnTheMainThreadAndCanComeBack) {
  std::atomic<bool> insideCall = true;
  std::atomic<bool> ranInside = false;
  std::atomic<bool> worker = false;
  bool back = false;
  this->queue().global([&] {
    ranInside = insideCall && this->queue().isMainThread();
    worker = !this->queue().isMainThread();
    this->queue().async([&] { back = this->queue().isMainThread(); });
  });
  insideCall = false;
  EXPECT_TRUE(this->wait([&] { return back; }));
  EXPECT_TRUE(worker);
  EXPECT_FALSE(ranInside);
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, RunsByDueTimeAndThenInOrderOfTheCalls,
                            ATaskQueuedByATaskRunsAfterItAndAfterThoseBefore,
                            ATimerTicksFirstAfterOneIntervalAndStopsWithItsHandle, ATimerMayBeStoppedInItsOwnTick,
                            GlobalWorkIsNotOnTheMainThreadAndCanComeBack);

}  // namespace orivex::contract
