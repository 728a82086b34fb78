#include "UploadReporter.h"

#include <limits>
#include <mutex>
#include <utility>

namespace orivex::gtk {
namespace {

// 25 a second: with the last one, which does not wait, fewer than 30.
constexpr double shortestInterval = 0.04;

}  // namespace

/// The main thread's end.
struct UploadReporter::Recipient {
  std::function<void(double fraction)> progress;
  Once<void(UploadReply)> completion;

  std::mutex mutex;
  double fraction = 0;  // the newest
  double reportedAt = -std::numeric_limits<double>::infinity();
  bool isQueued = false;

  void report(double now) {
    double newest = 0;
    {
      const std::lock_guard lock(mutex);
      newest = fraction;
      reportedAt = now;
      isQueued = false;
    }
    progress(newest);
  }
};

UploadReporter::UploadReporter(MainQueue& queue, std::function<void(double fraction)> progress,
                               Once<void(UploadReply)> completion)
    : queue_(queue), recipient_(std::make_shared<Recipient>()) {
  recipient_->progress = std::move(progress);
  recipient_->completion = std::move(completion);
}

void UploadReporter::progress(double fraction) {
  {
    const std::lock_guard lock(recipient_->mutex);
    if (fraction <= recipient_->fraction) return;
    recipient_->fraction = fraction;
    const bool isTooSoon = fraction < 1 && queue_.now() < recipient_->reportedAt + shortestInterval;
    if (recipient_->isQueued || isTooSoon) return;
    recipient_->isQueued = true;
  }
  queue_.async([&queue = queue_, recipient = recipient_] { recipient->report(queue.now()); });
}

void UploadReporter::finish(UploadReply reply) {
  queue_.async([recipient = std::move(recipient_), reply = std::move(reply)]() mutable {
    std::move(recipient->completion)(std::move(reply));
  });
}

}  // namespace orivex::gtk
