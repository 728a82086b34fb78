#include "CurlHttpClient.h"

#include <memory>
#include <utility>

namespace orivex::gtk {

void CurlHttpClient::send(const UrlRequest& request, Once<void(HttpResult)> completion) {
  // The guard is made here and run through the queue: it only travels through the background thread.
  auto onMain = alive_.guard(
      [completion = std::move(completion)](HttpResult result) mutable { std::move(completion)(std::move(result)); });
  auto finished = [&queue = mainQueue_, onMain = std::move(onMain)](HttpResult result) mutable {
    queue.async([onMain = std::move(onMain), result = std::move(result)]() mutable { onMain(std::move(result)); });
  };
  worker_.add(std::make_unique<CurlTransfer>(request, std::move(finished)));
}

void CurlHttpClient::upload(UploadRequest /*request*/, std::function<void(double)> /*progress*/,
                            Once<void(UploadReply)> completion) {
  mainQueue_.async([completion = std::move(completion)]() mutable {
    std::move(completion)({std::nullopt, TransportError{TransportError::other, "Uploads are not built yet"}});
  });
}

}  // namespace orivex::gtk
