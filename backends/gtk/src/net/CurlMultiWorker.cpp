#include "CurlMultiWorker.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "../Contained.h"

namespace orivex::gtk {
namespace {

// Rounds up, so that a check does not come early, finds nothing and is repeated at once.
int pollMilliseconds(CurlTransfer::Clock::duration wait) {
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(wait).count();
  return milliseconds < INT_MAX ? static_cast<int>(milliseconds) + 1 : INT_MAX;
}

}  // namespace

CurlMultiWorker::CurlMultiWorker(Ended ended) : ended_(std::move(ended)) {
  static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(initialised);
  multi_.reset(curl_multi_init());
  thread_ = std::thread([this] { run(); });
}

CurlMultiWorker::~CurlMultiWorker() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  curl_multi_wakeup(multi_.get());
  thread_.join();
  for (const auto& transfer : running_) curl_multi_remove_handle(multi_.get(), transfer->handle());
}

void CurlMultiWorker::add(std::unique_ptr<CurlTransfer> transfer) {
  {
    const std::lock_guard lock(mutex_);
    added_.push_back(std::move(transfer));
  }
  wake();
}

void CurlMultiWorker::wake() {
  curl_multi_wakeup(multi_.get());
}

void CurlMultiWorker::run() {
  while (takeAdded()) {
    int active = 0;
    curl_multi_perform(multi_.get(), &active);
    finishEnded();
    // libcurl shortens the wait to the next of its own time-outs; a wake-up that came in between ends it at once.
    curl_multi_poll(multi_.get(), nullptr, 0, checkRunning(), nullptr);
  }
}

// Whether to go on.
bool CurlMultiWorker::takeAdded() {
  Transfers added;
  {
    const std::lock_guard lock(mutex_);
    if (closed_) return false;
    added.swap(added_);
  }
  for (auto& transfer : added) begin(std::move(transfer));
  return true;
}

void CurlMultiWorker::begin(std::unique_ptr<CurlTransfer> transfer) {
  auto code = CURLE_OUT_OF_MEMORY;
  contained([&] { code = transfer->prepare(); });
  if (code != CURLE_OK) {
    contained([&] { ended_(std::move(transfer), code); });
    return;
  }
  curl_multi_add_handle(multi_.get(), transfer->handle());
  running_.push_back(std::move(transfer));
}

void CurlMultiWorker::finishEnded() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    end(std::find_if(running_.begin(), running_.end(),
                     [&](const auto& transfer) { return transfer->handle() == message->easy_handle; }),
        message->data.result);
  }
}

// Returns the milliseconds until the next check is due.
int CurlMultiWorker::checkRunning() {
  const auto now = CurlTransfer::Clock::now();
  auto next = CurlTransfer::Clock::duration::max();
  for (auto at = running_.size(); at-- > 0;) {
    const auto transfer = running_.begin() + static_cast<std::ptrdiff_t>(at);
    if (*(*transfer)->stop()) {
      end(transfer, CurlTransfer::cancelled);
    } else if (const auto wait = (*transfer)->timeLeft(now)) {
      next = std::min(next, *wait);
    } else {
      end(transfer, CURLE_OPERATION_TIMEDOUT);
    }
  }
  return pollMilliseconds(next);
}

void CurlMultiWorker::end(Transfers::iterator running, CURLcode code) {
  auto transfer = std::move(*running);
  running_.erase(running);
  curl_multi_remove_handle(multi_.get(), transfer->handle());
  contained([&] { ended_(std::move(transfer), code); });
}

}  // namespace orivex::gtk
