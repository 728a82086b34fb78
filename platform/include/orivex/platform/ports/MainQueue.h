#pragma once

#include <functional>
#include <memory>

#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"

namespace orivex {

/// A repeating timer; destroying it stops it.
class Timer : public Interface {};

/// The thread that owns every view, and the way back to it. Work runs in the order in which it becomes due, and never
/// inside the call that queued it.
class MainQueue : public Interface {
 public:
  /// Queues `task`. Any thread.
  virtual void async(Task task) = 0;

  /// Queues `task` once `seconds` have passed since the call. Any thread.
  virtual void asyncAfter(double seconds, Task task) = 0;

  /// Calls `tick` every `seconds` until the timer is destroyed, first after one interval. Main thread.
  [[nodiscard]] virtual std::unique_ptr<Timer> repeat(double seconds, std::function<void()> tick) = 0;

  /// Runs `task` on a worker thread of default priority. Any thread. The task must not touch views.
  virtual void global(Task task) = 0;

  /// Seconds of a steady clock with an arbitrary start. Any thread.
  virtual double now() const = 0;

  virtual bool isMainThread() const = 0;
};

}  // namespace orivex
