#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// A bounded set of threads for work that may block. A thread starts when there is work and none is free, and ends
/// after it has been idle for a while. Destroying the pool drops what has not begun and waits for what has.
class WorkerPool {
 public:
  /// `longestIdleness`: how long a thread without work waits for more before it ends.
  WorkerPool(std::size_t maximumThreads, std::chrono::milliseconds longestIdleness)
      : maximumThreads_(maximumThreads), longestIdleness_(longestIdleness) {}
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;
  ~WorkerPool();

  /// Any thread. Tasks begin in the order in which they were given.
  void run(Task task);

 private:
  void work();
  void joinEnded();

  const std::size_t maximumThreads_;
  const std::chrono::milliseconds longestIdleness_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  std::vector<std::thread> threads_;
  std::vector<std::thread::id> ended_;
  std::size_t idle_ = 0;
  bool closed_ = false;
};

}  // namespace orivex::gtk
