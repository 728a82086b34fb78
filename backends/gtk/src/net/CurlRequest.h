#pragma once

#include "CurlTransfer.h"

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// A GET request that follows redirects and is over with the head of the final reply.
class CurlRequest final : public CurlTransfer {
 public:
  /// `finished` gets the result of `finish`, on whichever thread calls that.
  CurlRequest(const UrlRequest& request, Once<void(StatusResult)> finished);

  void finish(CURLcode code) override;

 private:
  std::int64_t position() override;
  bool wantsBody() const override { return false; }
  bool follows(const Redirect& redirect) override;

  Once<void(StatusResult)> finished_;
};

}  // namespace orivex::gtk
