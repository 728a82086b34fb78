#include "WorkerPool.h"

#include <algorithm>
#include <utility>

#include "Contained.h"

namespace orivex::gtk {

WorkerPool::~WorkerPool() {
  std::deque<Task> dropped;
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(tasks_);
    threads.swap(threads_);
  }
  changed_.notify_all();
  for (auto& thread : threads) thread.join();
}

void WorkerPool::run(Task task) {
  {
    const std::lock_guard lock(mutex_);
    if (closed_) return;
    joinEnded();
    tasks_.push_back(std::move(task));
    if (tasks_.size() > idle_ && threads_.size() < maximumThreads_) threads_.emplace_back([this] { work(); });
  }
  changed_.notify_one();
}

void WorkerPool::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    ++idle_;
    const bool woken = changed_.wait_for(lock, longestIdleness_, [this] { return closed_ || !tasks_.empty(); });
    --idle_;
    if (closed_ || !woken) break;
    auto task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    contained([&] { std::move(task)(); });
    lock.lock();
  }
  ended_.push_back(std::this_thread::get_id());
}

// An ended thread has let go of the mutex for good or is about to, so joining it under the mutex cannot wait for it.
void WorkerPool::joinEnded() {
  for (const auto id : std::exchange(ended_, {})) {
    const auto thread = std::find_if(threads_.begin(), threads_.end(), [&](const auto& t) { return t.get_id() == id; });
    thread->join();
    threads_.erase(thread);
  }
}

}  // namespace orivex::gtk
