#include "orivex/testing/VirtualMainQueue.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <compare>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "orivex/platform/base/Log.h"

namespace orivex::testing {
namespace {

using std::chrono::nanoseconds;

constexpr nanoseconds shortestInterval = std::chrono::milliseconds(1);

// More than any screen queues at one instant, and still over in a moment.
constexpr int runawayCount = 1'000'000;

nanoseconds fromSeconds(double seconds) {
  constexpr double longest = 1e9;  // some thirty years: "never", without an overflow
  if (!(seconds > 0)) return nanoseconds::zero();
  return nanoseconds(std::llround(std::min(seconds, longest) * 1e9));
}

double toSeconds(nanoseconds time) {
  return static_cast<double>(time.count()) / 1e9;
}

constexpr double stepsPerSecond = 60;

// Slow at both ends, as animations of screens are.
double eased(double progress) {
  return progress * progress * (3 - 2 * progress);
}

}  // namespace

/// What waits, in the order in which it will run. Any thread.
class VirtualMainQueue::Schedule {
 public:
  struct Key {
    nanoseconds due;
    std::uint64_t ordinal;
    auto operator<=>(const Key&) const = default;  // NOLINT(modernize-use-nullptr): there is no pointer
  };
  struct Entry {
    Task task;
    bool onWorker = false;
  };

  nanoseconds now() const {
    const std::lock_guard lock(mutex_);
    return now_;
  }

  void moveTo(nanoseconds time) {
    const std::lock_guard lock(mutex_);
    moveForward(time);
  }

  Key add(nanoseconds delay, Entry entry) {
    const std::lock_guard lock(mutex_);
    return insert(now_ + delay, std::move(entry));
  }

  /// At `due`, or now when that is over.
  Key addAt(nanoseconds due, Entry entry) {
    const std::lock_guard lock(mutex_);
    return insert(std::max(due, now_), std::move(entry));
  }

  /// A task's destruction may come back here, so none is destroyed under the lock.
  void remove(const Key& key) {
    decltype(entries_)::node_type removed;
    const std::lock_guard lock(mutex_);
    removed = entries_.extract(key);
  }

  std::size_t clear() {
    decltype(entries_) dropped;
    const std::lock_guard lock(mutex_);
    dropped.swap(entries_);
    return dropped.size();
  }

  /// The next entry that is due at `until`, with the time moved to it.
  std::optional<Entry> take(nanoseconds until) {
    const std::lock_guard lock(mutex_);
    if (entries_.empty() || entries_.begin()->first.due > until) return std::nullopt;
    const auto next = entries_.extract(entries_.begin());
    moveForward(next.key().due);
    if (++takenNow_ > runawayCount) {
      fatalError("OrivexSDK/VirtualMainQueue", "work keeps queueing work without time passing");
    }
    return std::move(next.mapped());
  }

  std::size_t size() const {
    const std::lock_guard lock(mutex_);
    return entries_.size();
  }

  std::optional<nanoseconds> nextDue() const {
    const std::lock_guard lock(mutex_);
    if (entries_.empty()) return std::nullopt;
    return entries_.begin()->first.due;
  }

 private:
  Key insert(nanoseconds due, Entry entry) {
    return entries_.emplace(Key{due, ordinal_++}, std::move(entry)).first->first;
  }

  void moveForward(nanoseconds time) {
    if (time <= now_) return;
    now_ = time;
    takenNow_ = 0;
  }

  mutable std::mutex mutex_;
  std::map<Key, Entry> entries_;
  nanoseconds now_{0};
  std::uint64_t ordinal_ = 0;
  int takenNow_ = 0;
};

class VirtualMainQueue::RepeatingTimer final : public Timer {
 public:
  RepeatingTimer(const std::shared_ptr<Schedule>& schedule, nanoseconds interval, std::function<void()> tick)
      : state_(std::make_shared<State>(State{schedule, interval, std::move(tick), {}, false})) {
    arm(state_, schedule->now() + interval);
  }

  ~RepeatingTimer() override {
    state_->stopped = true;
    if (const auto schedule = state_->schedule.lock()) schedule->remove(state_->next);
  }

 private:
  // Outlives the timer for the length of a tick that destroys it.
  struct State {
    std::weak_ptr<Schedule> schedule;
    nanoseconds interval;
    std::function<void()> tick;
    Schedule::Key next;
    bool stopped;
  };

  static void arm(const std::shared_ptr<State>& state, nanoseconds due) {
    const auto schedule = state->schedule.lock();
    if (!schedule) return;
    state->next = schedule->addAt(due, {[weak = std::weak_ptr<State>(state)] {
                                    if (const auto held = weak.lock()) fire(held);
                                  }});
  }

  static void fire(const std::shared_ptr<State>& state) {
    const auto due = state->next.due;
    state->tick();
    if (!state->stopped) arm(state, due + state->interval);
  }

  std::shared_ptr<State> state_;
};

VirtualMainQueue::VirtualMainQueue() : schedule_(std::make_shared<Schedule>()) {}
VirtualMainQueue::~VirtualMainQueue() = default;

void VirtualMainQueue::async(Task task) {
  schedule_->add(nanoseconds::zero(), {std::move(task)});
}

void VirtualMainQueue::asyncAfter(double seconds, Task task) {
  schedule_->add(fromSeconds(seconds), {std::move(task)});
}

std::unique_ptr<Timer> VirtualMainQueue::repeat(double seconds, std::function<void()> tick) {
  requireMainThread(*this, "MainQueue::repeat");
  return std::make_unique<RepeatingTimer>(schedule_, std::max(fromSeconds(seconds), shortestInterval), std::move(tick));
}

void VirtualMainQueue::global(Task task) {
  schedule_->add(nanoseconds::zero(), {std::move(task), true});
}

double VirtualMainQueue::now() const {
  return toSeconds(schedule_->now());
}

bool VirtualMainQueue::isMainThread() const {
  return std::this_thread::get_id() == owner_ && !onWorker_;
}

bool VirtualMainQueue::runNext(std::chrono::nanoseconds until) {
  auto entry = schedule_->take(until);
  if (!entry) return false;
  struct Restore {
    bool& flag;
    bool before;
    ~Restore() { flag = before; }
  } restore{onWorker_, onWorker_};
  onWorker_ = entry->onWorker;
  // Moved out, so that the task's captures end on the thread on which it ran.
  auto task = std::move(entry->task);
  std::move(task)();
  return true;
}

void VirtualMainQueue::advance(double seconds) {
  advanceUntil([] { return false; }, seconds);
}

bool VirtualMainQueue::advanceUntil(const std::function<bool()>& condition, double seconds) {
  requireMainThread(*this, "VirtualMainQueue::advance");
  const auto until = schedule_->now() + fromSeconds(seconds);
  while (!condition()) {
    if (runNext(until)) continue;
    schedule_->moveTo(until);
    return condition();
  }
  return true;
}

std::size_t VirtualMainQueue::pendingCount() const {
  return schedule_->size();
}

std::optional<double> VirtualMainQueue::nextDue() const {
  const auto due = schedule_->nextDue();
  return due ? std::optional(toSeconds(*due)) : std::nullopt;
}

void VirtualMainQueue::discardPending() {
  while (schedule_->clear() > 0) {
  }
}

void requireMainThread(const MainQueue& queue, std::string_view operation) {
  if (queue.isMainThread()) return;
  fatalError("OrivexSDK/VirtualDevice", std::string(operation) + " was called off the main thread");
}

void VirtualAnimator::animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) {
  requireMainThread(queue_, "Animator::animate");
  const double length = reducedMotion_ ? 0 : seconds;
  const auto shared = std::make_shared<std::function<void(double)>>(std::move(step));
  for (int count = 1; count / stepsPerSecond < length; ++count) {
    const double elapsed = count / stepsPerSecond;
    queue_.asyncAfter(elapsed, [shared, progress = eased(elapsed / length)] { (*shared)(progress); });
  }
  queue_.asyncAfter(length, [shared, completion = std::move(completion)]() mutable {
    (*shared)(1);
    std::move(completion)();
  });
}

}  // namespace orivex::testing
