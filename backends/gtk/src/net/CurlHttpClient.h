#pragma once

#include <functional>
#include <map>
#include <memory>

#include "CurlMultiWorker.h"
#include "ProxyLookup.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// HTTP(S) over libcurl on a background thread, through the proxies of the desktop. Certificates are verified against
/// the system's authorities. Destroying the client drops the requests that are still under way: their completions are
/// not called.
class CurlHttpClient final : public HttpClient {
 public:
  /// `mainQueue` must outlive the client.
  explicit CurlHttpClient(MainQueue& mainQueue, ProxyLookup proxies = ProxyLookup());

  void send(const UrlRequest& request, Once<void(StatusResult)> completion) override;
  std::function<void()> upload(UploadRequest request, std::function<void(double fraction)> progress,
                               Once<void(UploadReply)> completion) override;

 private:
  using Transfer = std::unique_ptr<CurlTransfer>;

  void start(Transfer transfer);
  void proxiesFound(std::size_t id, ProxyLookup::Proxies proxies);
  void cancel(const CurlTransfer::Flag& stop);
  void ended(Transfer transfer, CURLcode code);

  MainQueue& mainQueue_;
  ProxyLookup proxies_;
  std::size_t lastId_ = 0;
  std::map<std::size_t, Transfer> waiting_;  // for their proxies
  std::function<void(Transfer)> restart_;    // the background thread copies it
  CurlMultiWorker worker_;
  Alive alive_;
};

}  // namespace orivex::gtk
