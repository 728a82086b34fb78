#include "CurlHttpClient.h"

#include <algorithm>
#include <utility>

#include "CurlRequest.h"
#include "CurlUpload.h"

namespace orivex::gtk {

CurlHttpClient::CurlHttpClient(MainQueue& mainQueue, ProxyLookup proxies)
    : mainQueue_(mainQueue),
      proxies_(std::move(proxies)),
      worker_([this](Transfer transfer, CURLcode code) { ended(std::move(transfer), code); }) {
  restart_ = alive_.guard([this](Transfer transfer) { start(std::move(transfer)); });
}

void CurlHttpClient::send(const UrlRequest& request, Once<void(StatusResult)> completion) {
  // The guard is made here and run through the queue: it only travels through the background thread.
  auto onMain = alive_.guard(
      [completion = std::move(completion)](StatusResult result) mutable { std::move(completion)(std::move(result)); });
  auto finished = [&queue = mainQueue_, onMain = std::move(onMain)](StatusResult result) mutable {
    queue.async([onMain = std::move(onMain), result = std::move(result)]() mutable { onMain(std::move(result)); });
  };
  start(std::make_unique<CurlRequest>(request, std::move(finished)));
}

std::function<void()> CurlHttpClient::upload(UploadRequest request, std::function<void(double fraction)> progress,
                                             Once<void(UploadReply)> completion) {
  auto onMain = alive_.guard(
      [completion = std::move(completion)](UploadReply reply) mutable { std::move(completion)(std::move(reply)); });
  UploadReporter reporter(mainQueue_, alive_.guard(std::move(progress)), std::move(onMain));
  auto transfer = std::make_unique<CurlUpload>(std::move(request), std::move(reporter));
  auto cancelTransfer = alive_.guard([this, stop = transfer->stop()] { cancel(stop); });
  start(std::move(transfer));
  return cancelTransfer;
}

void CurlHttpClient::start(Transfer transfer) {
  const auto id = ++lastId_;
  const auto& kept = waiting_[id] = std::move(transfer);
  proxies_.find(kept->address(), kept->idleSeconds(),
                alive_.guard([this, id](ProxyLookup::Proxies proxies) { proxiesFound(id, std::move(proxies)); }));
}

void CurlHttpClient::proxiesFound(std::size_t id, ProxyLookup::Proxies proxies) {
  auto waiting = waiting_.extract(id);
  if (!waiting) return;  // given up
  auto& transfer = waiting.mapped();
  if (!proxies) return transfer->finish(CURLE_OPERATION_TIMEDOUT);
  transfer->setProxies(*std::move(proxies));
  worker_.add(std::move(transfer));
}

// One that waits for its proxies has not begun; the others end at the worker's next check.
void CurlHttpClient::cancel(const CurlTransfer::Flag& stop) {
  *stop = true;
  worker_.wake();
  const auto found = std::find_if(waiting_.begin(), waiting_.end(),
                                  [&](const auto& waiting) { return waiting.second->stop() == stop; });
  if (found == waiting_.end()) return;
  const auto transfer = std::move(found->second);
  waiting_.erase(found);
  transfer->finish(CurlTransfer::cancelled);
}

void CurlHttpClient::ended(Transfer transfer, CURLcode code) {
  if (transfer->takesNextProxy(code)) {
    worker_.add(std::move(transfer));
  } else if (transfer->isRedirected(code)) {
    // Another proxy may lead there.
    mainQueue_.async([restart = restart_, transfer = std::move(transfer)]() mutable { restart(std::move(transfer)); });
  } else {
    transfer->finish(code);
  }
}

}  // namespace orivex::gtk
