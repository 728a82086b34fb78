#include "orivex/testing/VirtualHttpClient.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {
namespace {

// As common clients do.
constexpr int mostRedirects = 20;

constexpr std::size_t longestBody = std::size_t{1024} * 1024;

TransportError timedOut() {
  return {TransportError::timedOut, "请求超时", "the virtual server did not answer"};
}

VirtualUploadReply storedFile(const UploadRequest& request) {
  const std::string type = request.file ? request.file->mimeType : "";
  return VirtualUploadReply::respond(200, R"({"url":"https://files.test/1","inputContentType":")" + type +
                                              R"(","actualContentType":")" + type + "\"}");
}

}  // namespace

void VirtualHttpClient::send(const UrlRequest& request, Once<void(StatusResult)> completion) {
  requireMainThread(queue_, "HttpClient::send");
  requests_.push_back(request);
  auto exchange = std::make_unique<Exchange>(Exchange{request, 0, StatusResult(), std::move(completion)});
  queue_.async(alive_.guard([this, exchange = std::move(exchange)]() mutable { serve(std::move(exchange)); }));
}

std::function<void()> VirtualHttpClient::upload(UploadRequest request, std::function<void(double fraction)> progress,
                                                Once<void(UploadReply)> completion) {
  requireMainThread(queue_, "HttpClient::upload");
  auto served = uploadServer_ ? uploadServer_(request) : storedFile(request);
  auto reported = served.progress.size();
  const auto steps = static_cast<double>(std::max<std::size_t>(reported, 1));
  if (served.isSilent) {
    served.delay += request.idleTimeout;
    served.reply.error = timedOut();
  } else if (served.delay / steps > request.idleTimeout) {
    served.delay = request.idleTimeout;
    reported = std::min<std::size_t>(reported, 1);
    served.reply = {std::nullopt, timedOut()};
  }
  uploads_.push_back(std::move(request));
  const auto end = std::make_shared<Once<void(UploadReply)>>(std::move(completion));
  for (std::size_t step = 0; step < reported; ++step) {
    queue_.asyncAfter(served.delay * static_cast<double>(step) / steps,
                      alive_.guard([end, progress, fraction = served.progress[step]] {
                        if (*end) progress(fraction);
                      }));
  }
  if (served.reply.response) {
    auto& body = served.reply.response->body;
    body.resize(std::min(body.size(), longestBody));
  }
  const auto endAfter = [this](double seconds, const std::shared_ptr<Once<void(UploadReply)>>& ended,
                               UploadReply reply) {
    queue_.asyncAfter(
        seconds, alive_.guard([ended, reply = std::move(reply)]() mutable { std::move (*ended)(std::move(reply)); }));
  };
  endAfter(served.delay, end, std::move(served.reply));
  // Weakly: whoever waits for the end holds this function.
  return alive_.guard([endAfter, weak = std::weak_ptr(end)] {
    if (const auto waiting = weak.lock()) {
      endAfter(0, waiting, {std::nullopt, TransportError{TransportError::other, "已取消"}});
    }
  });
}

void VirtualHttpClient::serve(std::unique_ptr<Exchange> exchange) {
  auto reply = server_ ? server_(exchange->request) : VirtualReply::respond(200);
  const double timeout = exchange->request.timeout;
  if (std::holds_alternative<VirtualReply::Silence>(reply.outcome) || reply.delay > timeout) {
    endAfter(timeout, std::move(exchange), timedOut());
  } else if (const int* const status = std::get_if<int>(&reply.outcome)) {
    endAfter(reply.delay, std::move(exchange), *status);
  } else if (auto* error = std::get_if<TransportError>(&reply.outcome)) {
    endAfter(reply.delay, std::move(exchange), std::move(*error));
  } else if (++exchange->redirects > mostRedirects) {
    endAfter(reply.delay, std::move(exchange), TransportError{TransportError::other, "重定向次数过多"});
  } else if (const auto& location = std::get<VirtualReply::Redirect>(reply.outcome).location;
             exchange->request.url.scheme() == "https" && location.scheme() != "https") {
    endAfter(reply.delay, std::move(exchange), TransportError{TransportError::other, "不支持的地址"});
  } else {
    exchange->request.url = location;
    queue_.asyncAfter(reply.delay,
                      alive_.guard([this, exchange = std::move(exchange)]() mutable { serve(std::move(exchange)); }));
  }
}

void VirtualHttpClient::endAfter(double seconds, std::unique_ptr<Exchange> exchange, StatusResult result) {
  exchange->result = std::move(result);
  queue_.asyncAfter(seconds, [exchange = std::move(exchange)]() mutable {
    std::move(exchange->completion)(std::move(exchange->result));
  });
}

}  // namespace orivex::testing
