#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// What a virtual server does with one request, `delay` seconds after it got it.
struct VirtualReply {
  struct Redirect {
    Url location;
  };
  struct Silence {};

  std::variant<HttpResponse, Redirect, TransportError, Silence> outcome;
  double delay = 0;

  static VirtualReply respond(int status, std::string body = "", double delay = 0) {
    return {HttpResponse{status, std::move(body)}, delay};
  }

  /// The client then asks for `location`, as for any other request.
  static VirtualReply redirect(Url location, double delay = 0) { return {Redirect{std::move(location)}, delay}; }

  /// The exchange breaks, for example because nobody listens there.
  static VirtualReply fail(std::string description, double delay = 0) {
    return {TransportError{TransportError::other, std::move(description)}, delay};
  }

  /// Never answers, so that the request times out.
  static VirtualReply never() { return {Silence{}, 0}; }
};

/// What a virtual server does with one upload. The body is on its way for `delay` seconds.
struct VirtualUploadReply {
  UploadReply reply;
  double delay = 0;
  std::vector<double> progress{};  ///< Fractions as they are reported, evenly spread over `delay`.
  bool isSilent = false;           ///< Never answers: the upload ends by its idle time-out after the last progress.

  static VirtualUploadReply respond(int status, std::string body, double delay = 0, std::vector<double> progress = {}) {
    return {{HttpResponse{status, std::move(body)}, std::nullopt}, delay, std::move(progress), false};
  }

  /// The exchange breaks before a reply came.
  static VirtualUploadReply fail(std::string description, double delay = 0) {
    return {{std::nullopt, TransportError{TransportError::other, std::move(description)}}, delay, {}, false};
  }
};

/// Exchanges with a server that is a function. Without one, every request is answered at once with status 200 and no
/// body.
class VirtualHttpClient final : public HttpClient {
 public:
  using Server = std::function<VirtualReply(const UrlRequest&)>;

  explicit VirtualHttpClient(MainQueue& queue) : queue_(queue) {}

  void send(const UrlRequest& request, Once<void(HttpResult)> completion) override;
  void upload(UploadRequest request, std::function<void(double fraction)> progress,
              Once<void(UploadReply)> completion) override;

  /// Serves the requests from now on. Called on the main thread from the queue.
  void setServer(Server server) { server_ = std::move(server); }

  /// Serves the uploads from now on, as `setServer` does for requests. Without it, each is answered with status 200
  /// and the description of a stored file.
  using UploadServer = std::function<VirtualUploadReply(const UploadRequest&)>;
  void setUploadServer(UploadServer server) { uploadServer_ = std::move(server); }

  /// What was uploaded, in order.
  const std::vector<UploadRequest>& uploads() const { return uploads_; }

  /// What was sent, in order, without the requests that follow a redirect.
  const std::vector<UrlRequest>& requests() const { return requests_; }
  void forgetRequests() { requests_.clear(); }
  void forgetUploads() { uploads_.clear(); }

 private:
  struct Exchange {
    UrlRequest request;
    double deadline = 0;  // of the queue's time
    int redirects = 0;
    HttpResult result;
    Once<void(HttpResult)> completion;
  };

  void ask(std::unique_ptr<Exchange> exchange);
  void endAfter(double seconds, std::unique_ptr<Exchange> exchange, HttpResult result);

  MainQueue& queue_;
  Server server_;
  UploadServer uploadServer_;
  std::vector<UploadRequest> uploads_;
  std::vector<UrlRequest> requests_;
  Alive alive_;
};

}  // namespace orivex::testing
