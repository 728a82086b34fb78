#include "GlibMainQueue.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

#include "Contained.h"

namespace orivex::gtk {
namespace {

constexpr double microsecondsPerSecond = 1e6;

// A visitor's few pictures and clips at a time. Half of them may wait for a decoder; a voice message must not.
constexpr std::size_t mostWorkers = 8;

// Long enough to serve the next of a visitor's steps, short enough to leave no thread behind in an idle host.
constexpr std::chrono::seconds longestWorkerIdleness{5};

// Shorter intervals would leave the main thread no time for anything else.
constexpr double shortestInterval = 0.001;

// Rounds up, so that nothing becomes due early. What is negative or no number is due at once.
std::int64_t delay(double seconds) {
  if (!(seconds > 0)) return 0;
  constexpr std::int64_t longest = std::numeric_limits<std::int64_t>::max() / 4;
  const double microseconds = std::ceil(seconds * microsecondsPerSecond);
  return microseconds < static_cast<double>(longest) ? static_cast<std::int64_t>(microseconds) : longest;
}

}  // namespace

struct GlibMainQueue::Ticking {
  std::int64_t interval;
  std::function<void()> tick;
};

struct GlibMainQueue::RepeatingTimer final : Timer {
  explicit RepeatingTimer(std::shared_ptr<Ticking> owned) : ticking(std::move(owned)) {}
  const std::shared_ptr<Ticking> ticking;
};

GlibMainQueue::GlibMainQueue() : workers_(mostWorkers, longestWorkerIdleness) {
  static GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};
  source_.reset(g_source_new(&functions, sizeof(GSource)));
  g_source_set_static_name(source_.get(), "orivex main queue");
  g_source_set_callback(source_.get(), nullptr, this, nullptr);
  g_source_set_can_recurse(source_.get(), TRUE);  // a task may run a loop of its own, as a modal dialogue does
  g_source_attach(source_.get(), nullptr);
}

GlibMainQueue::~GlibMainQueue() {
  g_source_destroy(source_.get());
  std::vector<Entry> dropped;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(entries_);
  }
}

void GlibMainQueue::async(Task task) {
  asyncAfter(0, std::move(task));
}

void GlibMainQueue::asyncAfter(double seconds, Task task) {
  push(clock() + delay(seconds), std::move(task));
}

std::unique_ptr<Timer> GlibMainQueue::repeat(double seconds, std::function<void()> tick) {
  auto ticking = std::make_shared<Ticking>(Ticking{delay(std::max(shortestInterval, seconds)), std::move(tick)});
  scheduleTick(clock() + ticking->interval, ticking);
  return std::make_unique<RepeatingTimer>(std::move(ticking));
}

double GlibMainQueue::now() const {
  return static_cast<double>(clock()) / microsecondsPerSecond;
}

GlibMainQueue::Microseconds GlibMainQueue::clock() {
  return g_get_monotonic_time();
}

bool GlibMainQueue::runsLater(const Entry& one, const Entry& other) {
  return std::pair(one.due, one.ordinal) > std::pair(other.due, other.ordinal);
}

void GlibMainQueue::push(Microseconds due, Task task) {
  const std::lock_guard lock(mutex_);
  if (closed_) return;
  entries_.push_back({due, nextOrdinal_++, std::move(task)});
  std::push_heap(entries_.begin(), entries_.end(), runsLater);
  armSource();
}

void GlibMainQueue::scheduleTick(Microseconds due, std::weak_ptr<Ticking> ticking) {
  push(due, [this, due, ticking = std::move(ticking)] {
    if (const auto held = ticking.lock()) {
      // Ticks that a busy main thread has missed are left out; the next one keeps the rhythm.
      const auto missed = (clock() - due) / held->interval;
      scheduleTick(due + (missed + 1) * held->interval, held);
      held->tick();
    }
  });
}

void GlibMainQueue::armSource() {
  g_source_set_ready_time(source_.get(), entries_.empty() ? -1 : entries_.front().due);
}

gboolean GlibMainQueue::dispatch(GSource*, GSourceFunc, gpointer data) noexcept {
  contained([&] { static_cast<GlibMainQueue*>(data)->runNext(); });
  return G_SOURCE_CONTINUE;
}

// One task at a time, so that the toolkit's own events get their turn between two of them.
void GlibMainQueue::runNext() {
  Task task;
  {
    const std::lock_guard lock(mutex_);
    if (!entries_.empty() && entries_.front().due <= clock()) {
      std::pop_heap(entries_.begin(), entries_.end(), runsLater);
      task = std::move(entries_.back().task);
      entries_.pop_back();
    }
    armSource();
  }
  std::move(task)();
}

}  // namespace orivex::gtk
