#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "CurlHandles.h"

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/HttpClient.h"

namespace orivex::gtk {

/// One exchange as libcurl runs it. libcurl keeps pointers into it, so it stays where it is until it is destroyed, and
/// it must not be destroyed while its handle is in a multi handle.
class CurlTransfer {
 public:
  /// `finished` gets the result of `finish`, on whichever thread calls that.
  CurlTransfer(const UrlRequest& request, Once<void(HttpResult)> finished);
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;
  ~CurlTransfer() = default;

  CURL* handle() const { return easy_.get(); }

  /// Reports how the transfer ended. Once.
  void finish(CURLcode code);

 private:
  static std::size_t receive(const char* data, std::size_t one, std::size_t length, void* transfer) noexcept;

  void setTarget(const UrlRequest& request);
  void setRules();
  HttpResult result(CURLcode code);

  std::array<char, CURL_ERROR_SIZE> error_{};
  std::string body_;
  CurlList headers_;
  CurlEasy easy_;
  Once<void(HttpResult)> finished_;
};

}  // namespace orivex::gtk
