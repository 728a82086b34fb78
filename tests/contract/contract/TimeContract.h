#pragma once

#include <algorithm>
#include <atomic>
#include <memory>

#include "contract/Fixture.h"

#include "orivex/platform/ports/Animator.h"
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

template <DeviceFixture Fixture>
class AnimatorContract : public Suite<Fixture> {
 protected:
  struct Course {
    std::vector<double> steps;
    int completions = 0;
    bool steppedAfterCompletion = false;
  };

  void start(double seconds, Course& course) {
    this->fixture_.platform().animator.animate(
        seconds,
        [&course](double progress) {
          course.steps.push_back(progress);
          course.steppedAfterCompletion |= course.completions > 0;
        },
        [&course] { ++course.completions; });
    EXPECT_TRUE(course.steps.empty()) << "stepped inside the call";
    EXPECT_EQ(course.completions, 0) << "completed inside the call";
  }
};
TYPED_TEST_SUITE_P(AnimatorContract);

TYPED_TEST_P(AnimatorContract, RisesToExactlyOneAndCompletesOnce) {
  for (const double seconds : {0.2, 0.013, 0.0}) {
    typename TestFixture::Course course;
    this->start(seconds, course);
    EXPECT_TRUE(this->wait([&] { return course.completions > 0; })) << seconds;
    this->pass(moment);
    EXPECT_EQ(course.completions, 1) << seconds;
    EXPECT_FALSE(course.steppedAfterCompletion) << seconds;
    ASSERT_FALSE(course.steps.empty()) << seconds;
    EXPECT_EQ(course.steps.back(), 1.0) << seconds;
    EXPECT_EQ(std::count(course.steps.begin(), course.steps.end(), 1.0), 1) << seconds;
    EXPECT_TRUE(std::is_sorted(course.steps.begin(), course.steps.end())) << seconds;
    EXPECT_GE(course.steps.front(), 0.0) << seconds;
  }
}

REGISTER_TYPED_TEST_SUITE_P(AnimatorContract, RisesToExactlyOneAndCompletesOnce);

}  // namespace orivex::contract
