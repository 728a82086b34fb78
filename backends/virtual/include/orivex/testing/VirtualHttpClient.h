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

  std::variant<int, Redirect, TransportError, Silence> outcome;  ///< the number is a status
  double delay = 0;

  static VirtualReply respond(int status, double delay = 0) { return {status, delay}; }

  /// The client then asks for `location`, as for any other request.
  static VirtualReply redirect(Url location, double delay = 0) { return {Redirect{std::move(location)}, delay}; }

  /// The exchange breaks, for example because nobody listens there.
  static VirtualReply fail(std::string description, double delay = 0) {
    return {TransportError{TransportError::other, std::move(description)}, delay};
  }

  /// Never answers, so that the request times out.
  static VirtualReply never() { return {Silence{}, 0}; }
};

/// What a virtual server does with one upload, after all redirects. The body is on its way for `delay` seconds, or,
/// where the upload's idle time-out is shorter than from one progress to the next, until that ends it.
struct VirtualUploadReply {
  UploadReply reply;
  double delay = 0;
  std::vector<double> progress{};  ///< Fractions as they are reported, evenly spread over `delay`.
  /// Never answers, or, with a response, never to the end: the upload ends by its idle time-out after the last
  /// progress.
  bool isSilent = false;

  static VirtualUploadReply respond(int status, std::string body, double delay = 0, std::vector<double> progress = {}) {
    return {{HttpResponse{status, std::move(body)}, std::nullopt}, delay, std::move(progress), false};
  }

  /// The exchange breaks before a reply came.
  static VirtualUploadReply fail(std::string description, double delay = 0) {
    return {{std::nullopt, TransportError{TransportError::other, std::move(description)}}, delay, {}, false};
  }
};

/// Exchanges with a server that is a function. Without one, every request is answered at once with status 200.
class VirtualHttpClient final : public HttpClient {
 public:
  using Server = std::function<VirtualReply(const UrlRequest&)>;

  explicit VirtualHttpClient(MainQueue& queue) : queue_(queue) {}

  void send(const UrlRequest& request, Once<void(StatusResult)> completion) override;
  std::function<void()> upload(UploadRequest request, std::function<void(double fraction)> progress,
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
    int redirects = 0;
    StatusResult result;
    Once<void(StatusResult)> completion;
  };

  void serve(std::unique_ptr<Exchange> exchange);
  void endAfter(double seconds, std::unique_ptr<Exchange> exchange, StatusResult result);

  MainQueue& queue_;
  Server server_;
  UploadServer uploadServer_;
  std::vector<UploadRequest> uploads_;
  std::vector<UrlRequest> requests_;
  Alive alive_;
};

}  // namespace orivex::testing
