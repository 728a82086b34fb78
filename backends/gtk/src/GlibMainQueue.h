#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "WorkerPool.h"
#include "glib/GMemory.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The main queue over GLib's default main context, at default priority. The thread that makes it is the main thread.
/// Delays are kept to the millisecond and never end early. Destroying it drops what is still queued, after the work
/// that already runs on worker threads has ended.
class GlibMainQueue final : public MainQueue {
 public:
  GlibMainQueue();
  ~GlibMainQueue() override;

  void async(Task task) override;
  void asyncAfter(double seconds, Task task) override;
  [[nodiscard]] std::unique_ptr<Timer> repeat(double seconds, std::function<void()> tick) override;
  void global(Task task) override { workers_.run(std::move(task)); }
  double now() const override;
  bool isMainThread() const override { return std::this_thread::get_id() == mainThread_; }

 private:
  using Microseconds = std::int64_t;
  struct Entry {
    Microseconds due;
    std::uint64_t ordinal;
    Task task;
  };
  struct Ticking;
  struct RepeatingTimer;

  static Microseconds clock();
  static bool runsLater(const Entry& one, const Entry& other);
  static gboolean dispatch(GSource* source, GSourceFunc callback, gpointer data) noexcept;

  void push(Microseconds due, Task task);
  void scheduleTick(Microseconds due, std::weak_ptr<Ticking> ticking);
  void armSource();
  void runNext();

  const std::thread::id mainThread_ = std::this_thread::get_id();
  GSourcePtr source_;
  std::mutex mutex_;
  std::vector<Entry> entries_;  // a heap: the next to run is in front
  std::uint64_t nextOrdinal_ = 0;
  bool closed_ = false;
  WorkerPool workers_;
};

}  // namespace orivex::gtk
