#pragma once

#include "CurlTransfer.h"

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// A GET request that follows redirects.
class CurlRequest final : public CurlTransfer {
 public:
  /// `finished` gets the result of `finish`, on whichever thread calls that.
  CurlRequest(const UrlRequest& request, Once<void(HttpResult)> finished);

  void finish(CURLcode code) override;

 private:
  Once<void(HttpResult)> finished_;
};

}  // namespace orivex::gtk
