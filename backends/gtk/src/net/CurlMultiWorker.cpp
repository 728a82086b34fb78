#include "CurlMultiWorker.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace orivex::gtk {

CurlMultiWorker::CurlMultiWorker() {
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
  curl_multi_wakeup(multi_.get());
}

void CurlMultiWorker::run() {
  while (takeAdded()) {
    int active = 0;
    curl_multi_perform(multi_.get(), &active);
    finishEnded();
    // libcurl shortens the wait to the next of its own time-outs; a wake-up that came in between ends it at once.
    curl_multi_poll(multi_.get(), nullptr, 0, INT_MAX, nullptr);
  }
}

// Whether to go on.
bool CurlMultiWorker::takeAdded() {
  std::vector<std::unique_ptr<CurlTransfer>> added;
  {
    const std::lock_guard lock(mutex_);
    if (closed_) return false;
    added.swap(added_);
  }
  for (auto& transfer : added) begin(std::move(transfer));
  return true;
}

void CurlMultiWorker::begin(std::unique_ptr<CurlTransfer> transfer) {
  curl_multi_add_handle(multi_.get(), transfer->handle());
  running_.push_back(std::move(transfer));
}

void CurlMultiWorker::finishEnded() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode code = message->data.result;
    const auto transfer = takeRunning(message->easy_handle);
    curl_multi_remove_handle(multi_.get(), transfer->handle());
    transfer->finish(code);
  }
}

std::unique_ptr<CurlTransfer> CurlMultiWorker::takeRunning(CURL* handle) {
  const auto found = std::find_if(running_.begin(), running_.end(),
                                  [&](const auto& transfer) { return transfer->handle() == handle; });
  auto transfer = std::move(*found);
  running_.erase(found);
  return transfer;
}

}  // namespace orivex::gtk
