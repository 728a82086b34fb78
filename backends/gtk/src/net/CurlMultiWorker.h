#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "CurlHandles.h"
#include "CurlTransfer.h"

namespace orivex::gtk {

/// Runs transfers on one background thread that sleeps when there is nothing to do. Connections are kept and reused.
/// Destroying it ends the thread and drops the unfinished transfers without a report.
class CurlMultiWorker {
 public:
  /// Gets each transfer that libcurl is done with, on the background thread.
  using Ended = std::function<void(std::unique_ptr<CurlTransfer> transfer, CURLcode code)>;

  explicit CurlMultiWorker(Ended ended);
  CurlMultiWorker(const CurlMultiWorker&) = delete;
  CurlMultiWorker& operator=(const CurlMultiWorker&) = delete;
  ~CurlMultiWorker();

  /// Begins `transfer`; its functions are called on the background thread. Any thread.
  void add(std::unique_ptr<CurlTransfer> transfer);

  /// Checks the transfers soon. Any thread.
  void wake();

 private:
  using Transfers = std::vector<std::unique_ptr<CurlTransfer>>;

  void run();
  bool takeAdded();
  void begin(std::unique_ptr<CurlTransfer> transfer);
  void finishEnded();
  int checkRunning();
  void end(Transfers::iterator running, CURLcode code);

  Ended ended_;
  CurlMulti multi_;
  Transfers running_;  // the background thread's own until that has ended
  std::mutex mutex_;
  Transfers added_;
  bool closed_ = false;
  std::thread thread_;
};

}  // namespace orivex::gtk
