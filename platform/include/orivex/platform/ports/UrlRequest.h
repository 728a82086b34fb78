#pragma once

#include <string>
#include <vector>

#include "orivex/platform/base/Url.h"

namespace orivex {

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
