#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orivex/Export.h"

namespace orivex {

/// An address that parses by the syntax of RFC 3986, kept percent-encoded.
class ORIVEX_API Url {
 public:
  /// Behind a scheme and a host everything is taken: what may not stand in path, query and fragment is percent-encoded,
  /// a "%" that begins no escape too. Elsewhere only non-ASCII characters are. Nothing when `text` is empty or does not
  /// parse: a bad scheme, host or port, an unclosed bracket, controls, an invalid UTF-8 sequence; without a scheme and
  /// a host also blanks, `"<>\^{}|[]`, the backquote and a broken escape.
  static std::optional<Url> parse(std::string_view text);

  /// The address of a file: "file://" and the percent-encoded path.
  static Url fromFilePath(std::string_view path);

  /// The whole address, percent-encoded where it was not.
  const std::string& absoluteString() const { return text_; }

  /// Lower-case scheme without its colon; empty for a relative reference.
  std::string scheme() const;

  /// "scheme://host:port" as written; empty without an authority.
  std::string origin() const;

  /// The percent-decoded path of a "file" address; nothing for another scheme.
  std::optional<std::string> filePath() const;

  bool operator==(const Url&) const = default;

 private:
  explicit Url(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

/// Percent-encodes for the query of an address. These stay as they are: A-Z a-z 0-9 and `!$&'()*+,-./:;=?@_~`; every
/// other byte of the UTF-8 text becomes an upper-case %XX. Nothing when `text` is not valid UTF-8.
std::optional<std::string> percentEncodeQuery(std::string_view text);

struct HttpHeader {
  std::string name;
  std::string value;
  bool operator==(const HttpHeader&) const = default;
};

/// A GET request as it is checked and then loaded. Caching follows the protocol's own policy.
struct UrlRequest {
  Url url;
  double timeout = 60.0;  ///< Seconds in which nothing moves, after which it is given up.
  std::vector<HttpHeader> headers;
  bool operator==(const UrlRequest&) const = default;
};

}  // namespace orivex
