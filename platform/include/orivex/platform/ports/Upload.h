#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/UrlRequest.h"

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

}  // namespace orivex
