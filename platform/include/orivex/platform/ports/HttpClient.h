#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/Upload.h"
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

/// How an upload ended. Both may be there: a connection can break in the middle of a reply.
struct UploadReply {
  std::optional<HttpResponse> response;  ///< as far as it came; nothing when no status line did
  std::optional<TransportError> error;   ///< of the connection, the file or the client; nothing when all went well
};

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

  /// Sends a form without holding its file in memory. Main thread; both callbacks come on the main thread and not
  /// inside this call. `progress` gets the sent share of the body, from 0 to 1, never falling, at most 30 times a
  /// second and once with 1 when all of it was sent; `completion` is called exactly once, after the last progress.
  /// Redirects are not followed: a form is not sent twice. A file that cannot be read, or that shrinks while it is
  /// being sent, ends in an error; of a reply's body, at most the first mebibyte is kept.
  virtual void upload(UploadRequest request, std::function<void(double fraction)> progress,
                      Once<void(UploadReply)> completion) = 0;
};

}  // namespace orivex
