#pragma once

#include <string>
#include <variant>

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/UrlRequest.h"

namespace orivex {

/// What a server answered: of a redirected request, the final reply.
struct HttpResponse {
  int status = 0;
  std::string body;
};

/// No reply came. Whatever a server says, an error status included, is an `HttpResponse` instead.
struct TransportError {
  /// The value by which the described behaviour tells a time-out from other transport errors.
  static constexpr int timedOut = -1001;
  static constexpr int other = -1;

  int code = other;
  std::string description;
};

using HttpResult = std::variant<HttpResponse, TransportError>;

/// Plain HTTP(S) exchanges off the main thread.
class HttpClient {
 public:
  HttpClient() = default;
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;
  virtual ~HttpClient() = default;

  /// Sends `request`, following redirects as a browser's loader does. Main thread; `completion` is called exactly once,
  /// on the main thread and not inside this call. An exchange that is not over after `request.timeout` seconds ends in
  /// `TransportError::timedOut`; of a body, at most the first mebibyte is kept.
  virtual void send(const UrlRequest& request, Once<void(HttpResult)> completion) = 0;
};

}  // namespace orivex
