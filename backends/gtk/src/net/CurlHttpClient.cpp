#include "CurlHttpClient.h"

#include <memory>
#include <utility>

#include "CurlRequest.h"
#include "CurlUpload.h"

namespace orivex::gtk {

void CurlHttpClient::send(const UrlRequest& request, Once<void(HttpResult)> completion) {
  // The guard is made here and run through the queue: it only travels through the background thread.
  auto onMain = alive_.guard(
      [completion = std::move(completion)](HttpResult result) mutable { std::move(completion)(std::move(result)); });
  auto finished = [&queue = mainQueue_, onMain = std::move(onMain)](HttpResult result) mutable {
    queue.async([onMain = std::move(onMain), result = std::move(result)]() mutable { onMain(std::move(result)); });
  };
  worker_.add(std::make_unique<CurlRequest>(request, std::move(finished)));
}

void CurlHttpClient::upload(UploadRequest request, std::function<void(double fraction)> progress,
                            Once<void(UploadReply)> completion) {
  auto onMain = alive_.guard(
      [completion = std::move(completion)](UploadReply reply) mutable { std::move(completion)(std::move(reply)); });
  UploadReporter reporter(mainQueue_, alive_.guard(std::move(progress)), std::move(onMain));
  worker_.add(std::make_unique<CurlUpload>(std::move(request), std::move(reporter)));
}

}  // namespace orivex::gtk
