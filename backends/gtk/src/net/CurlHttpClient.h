#pragma once

#include "CurlMultiWorker.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// HTTP(S) over libcurl on a background thread. Certificates are verified against the system's authorities, and a
/// proxy is taken from the usual environment variables (http_proxy, https_proxy, all_proxy, no_proxy). Destroying the
/// client drops the requests that are still under way: their completions are not called.
class CurlHttpClient final : public HttpClient {
 public:
  /// `mainQueue` must outlive the client.
  explicit CurlHttpClient(MainQueue& mainQueue) : mainQueue_(mainQueue) {}

  void send(const UrlRequest& request, Once<void(HttpResult)> completion) override;
  void upload(UploadRequest request, std::function<void(double fraction)> progress,
              Once<void(UploadReply)> completion) override;

 private:
  MainQueue& mainQueue_;
  CurlMultiWorker worker_;
  Alive alive_;
};

}  // namespace orivex::gtk
