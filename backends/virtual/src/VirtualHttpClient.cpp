#include "orivex/testing/VirtualHttpClient.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "ThreadCheck.h"

namespace orivex::testing {
namespace {

// As common clients do.
constexpr int mostRedirects = 20;

constexpr std::size_t longestBody = 1024 * 1024;

VirtualUploadReply storedFile(const UploadRequest& request) {
  const std::string type = request.file ? request.file->mimeType : "";
  return VirtualUploadReply::respond(200, R"({"url":"https://files.test/1","inputContentType":")" + type +
                                              R"(","actualContentType":")" + type + "\"}");
}

}  // namespace

void VirtualHttpClient::send(const UrlRequest& request, Once<void(HttpResult)> completion) {
  requireMainThread(queue_, "HttpClient::send");
  requests_.push_back(request);
  auto exchange = std::make_unique<Exchange>(
      Exchange{request, queue_.now() + request.timeout, 0, HttpResult(), std::move(completion)});
  queue_.async(alive_.guard([this, exchange = std::move(exchange)]() mutable { ask(std::move(exchange)); }));
}

void VirtualHttpClient::upload(UploadRequest request, std::function<void(double fraction)> progress,
                               Once<void(UploadReply)> completion) {
  requireMainThread(queue_, "HttpClient::upload");
  auto served = uploadServer_ ? uploadServer_(request) : storedFile(request);
  if (served.isSilent) {
    served.delay += request.idleTimeout;
    served.reply = {std::nullopt, TransportError{TransportError::timedOut, "The request timed out"}};
  }
  uploads_.push_back(std::move(request));
  const auto steps = static_cast<double>(served.progress.size());
  for (std::size_t step = 0; step < served.progress.size(); ++step) {
    queue_.asyncAfter(served.delay * static_cast<double>(step) / steps,
                      alive_.guard([progress, fraction = served.progress[step]] { progress(fraction); }));
  }
  if (served.reply.response) {
    auto& body = served.reply.response->body;
    body.resize(std::min(body.size(), longestBody));
  }
  queue_.asyncAfter(served.delay,
                    alive_.guard([completion = std::move(completion), reply = std::move(served.reply)]() mutable {
                      std::move(completion)(std::move(reply));
                    }));
}

void VirtualHttpClient::ask(std::unique_ptr<Exchange> exchange) {
  auto reply = server_ ? server_(exchange->request) : VirtualReply::respond(200);
  const double left = exchange->deadline - queue_.now();
  if (std::holds_alternative<VirtualReply::Silence>(reply.outcome) || reply.delay > left) {
    endAfter(left, std::move(exchange), TransportError{TransportError::timedOut, "The request timed out"});
  } else if (auto* response = std::get_if<HttpResponse>(&reply.outcome)) {
    response->body.resize(std::min(response->body.size(), longestBody));
    endAfter(reply.delay, std::move(exchange), std::move(*response));
  } else if (auto* error = std::get_if<TransportError>(&reply.outcome)) {
    endAfter(reply.delay, std::move(exchange), std::move(*error));
  } else if (++exchange->redirects > mostRedirects) {
    endAfter(reply.delay, std::move(exchange), TransportError{TransportError::other, "Too many redirects"});
  } else {
    exchange->request.url = std::get<VirtualReply::Redirect>(reply.outcome).location;
    queue_.asyncAfter(reply.delay,
                      alive_.guard([this, exchange = std::move(exchange)]() mutable { ask(std::move(exchange)); }));
  }
}

void VirtualHttpClient::endAfter(double seconds, std::unique_ptr<Exchange> exchange, HttpResult result) {
  exchange->result = std::move(result);
  queue_.asyncAfter(seconds, [exchange = std::move(exchange)]() mutable {
    std::move(exchange->completion)(std::move(exchange->result));
  });
}

}  // namespace orivex::testing
