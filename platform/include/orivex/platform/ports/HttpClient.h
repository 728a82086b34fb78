#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

/// A stretch of a file that is sent as something else of the same length.
struct Overwrite {
  std::int64_t at = 0;      ///< bytes from the beginning of the file
  std::int64_t length = 0;  ///< bytes
  std::string bytes;        ///< sent instead, no more than `length`; zeros follow
  bool operator==(const Overwrite&) const = default;
};

/// The part of a form that carries a file.
struct FilePart {
  /// A regular file, sent from disk: exactly the bytes that it has when the upload begins, but for `overwrites`.
  struct Path {
    std::string value;
    std::vector<Overwrite> overwrites{};
    bool operator==(const Path&) const = default;
  };
  /// Bytes in memory.
  struct Bytes {
    std::string value;
    bool operator==(const Bytes&) const = default;
  };

  std::string name;  ///< of the form field
  std::variant<Path, Bytes> content;
  std::string fileName;
  std::string mimeType;
  bool operator==(const FilePart&) const = default;
};

/// A plain part of a form: neither file name nor content type.
struct FormField {
  std::string name;
  std::string value;
  bool operator==(const FormField&) const = default;
};

/// A POST of a form as multipart/form-data (RFC 7578). The client adds the boundary to the "Content-Type" header.
struct UploadRequest {
  Url url;
  std::vector<HttpHeader> headers;
  std::optional<FilePart> file;
  std::vector<FormField> fields;  ///< after the file, in this order

  /// Seconds without a byte sent after which the exchange is given up; so the whole reply has as long after the last
  /// byte. What common clients allow.
  double idleTimeout = 60.0;
  bool operator==(const UploadRequest&) const = default;
};

/// What a server answered to an upload.
struct HttpResponse {
  int status = 0;
  std::string body;
};

/// No reply came, or not the whole. Whatever a server says, an error status included, is no such error; a proxy that
/// wants a name and a password is one.
struct TransportError {
  /// Tells a time-out, which visitors read as such, from other errors.
  static constexpr int timedOut = -1001;
  static constexpr int other = -1;

  int code = other;
  std::string description;  ///< for the visitor, in Chinese
  std::string detail{};     ///< for the log, in English; may be empty
};

/// The status of the final reply.
using StatusResult = std::variant<int, TransportError>;

/// How an upload ended. Both may be there: a connection can break in the middle of a reply.
struct UploadReply {
  std::optional<HttpResponse> response;  ///< as far as it came; nothing when no status line did
  std::optional<TransportError> error;   ///< of the connection, the file or the client; nothing when all went well
};

/// Plain HTTP(S) exchanges off the main thread.
class HttpClient : public Interface {
 public:
  /// Sends `request`, following redirects as a browser's loader does, but never from https to http, and reads the
  /// final reply's head; its body stays with the server. Main thread; `completion` is called exactly once, on the main
  /// thread and not inside this call. Where nothing moves for `request.timeout` seconds, the exchange ends in
  /// `TransportError::timedOut`.
  virtual void send(const UrlRequest& request, Once<void(StatusResult)> completion) = 0;

  /// Sends a form without holding its file in memory. Main thread; both callbacks come on the main thread and not
  /// inside this call. `progress` gets the sent share of the body, from 0 to 1, never falling, at most 30 times a
  /// second and once with 1 when all of it was sent; `completion` is called exactly once, after the last progress.
  /// Of redirects, only 307 and 308 to the same host are followed, never from https to http: any other reply is
  /// told as it is. The returned function gives the upload up: it ends in an error soon after, with what came of a
  /// reply by then; once it has ended, that does nothing. A form is not sent again after its connection broke. A file
  /// that cannot be read, or that shrinks while it is being sent, ends in an error; of a reply's body, at most the
  /// first mebibyte is kept.
  virtual std::function<void()> upload(UploadRequest request, std::function<void(double fraction)> progress,
                                       Once<void(UploadReply)> completion) = 0;
};

}  // namespace orivex
