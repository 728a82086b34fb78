#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// A main queue whose time stands still until a test moves it. The main thread is the one that made the queue. Time is
/// counted in whole nanoseconds from 0, so that ten steps of 0.1 s are exactly one second.
class VirtualMainQueue final : public MainQueue {
 public:
  VirtualMainQueue();
  ~VirtualMainQueue() override;

  void async(Task task) override;
  void asyncAfter(double seconds, Task task) override;

  /// An interval under a millisecond counts as one.
  [[nodiscard]] std::unique_ptr<Timer> repeat(double seconds, std::function<void()> tick) override;

  /// Runs `task` in its turn like any other, with `isMainThread()` false meanwhile: what must not be touched from a
  /// worker thread is then noticed at each run, not once in a while.
  void global(Task task) override;

  double now() const override;
  bool isMainThread() const override;

  /// Lets `seconds` pass, running whatever becomes due at its own time, in order of due time and then of queueing.
  /// Main thread. The process stops when work keeps queueing work without time passing.
  void advance(double seconds);

  /// Runs what is due now, and what that queues for now.
  void runUntilIdle() { advance(0); }

  /// Lets time pass from one due task to the next until `condition` holds, at most `seconds`. Returns whether it holds.
  bool advanceUntil(const std::function<bool()>& condition, double seconds);

  /// Tasks and timers that wait, whenever they are due.
  std::size_t pendingCount() const;

  /// Time of `now()` at which the next of them is due.
  std::optional<double> nextDue() const;

  /// Drops all of them unrun, and whatever their destruction queues.
  void discardPending();

 private:
  class Schedule;
  class RepeatingTimer;

  bool runNext(std::chrono::nanoseconds until);

  std::shared_ptr<Schedule> schedule_;
  std::thread::id owner_ = std::this_thread::get_id();
  bool onWorker_ = false;  // read and written on the owner's thread only
};

/// Stops the process unless this is the main thread. `operation` is what the reader of the message called.
void requireMainThread(const MainQueue& queue, std::string_view operation);

/// Animates at 60 steps a second of the queue's time.
class VirtualAnimator final : public Animator {
 public:
  explicit VirtualAnimator(MainQueue& queue) : queue_(queue) {}

  void animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) override;

  /// As a visitor's setting: animations show their last step only, as soon as the queue runs.
  void setReducedMotion(bool reduced) { reducedMotion_ = reduced; }

 private:
  MainQueue& queue_;
  bool reducedMotion_ = false;
};

}  // namespace orivex::testing
