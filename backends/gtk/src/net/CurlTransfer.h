#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CurlHandles.h"

#include "orivex/platform/ports/HttpClient.h"

namespace orivex::gtk {

/// One exchange as libcurl runs it: what all kinds have in common. libcurl keeps pointers into it, so it stays where it
/// is until it is destroyed, and it must not be destroyed while its handle is in a multi handle.
class CurlTransfer {
 public:
  using Clock = std::chrono::steady_clock;

  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;
  virtual ~CurlTransfer() = default;

  CURL* handle() const { return easy_.get(); }

  /// Does what may block, before libcurl begins. A code other than CURLE_OK ends the transfer with that code.
  virtual CURLcode prepare() { return CURLE_OK; }

  /// Looks at how far the transfer got. Returns for how long it needs no further look; nothing once it is to be given
  /// up as timed out. Called whenever something may have moved.
  virtual std::optional<Clock::duration> look(Clock::time_point /*now*/) { return Clock::duration::max(); }

  /// Reports how the transfer ended. Once.
  virtual void finish(CURLcode code) = 0;

 protected:
  CurlTransfer(const Url& url, const std::vector<HttpHeader>& headers);

  /// Of the final status line; nothing when none came.
  std::optional<int> status() const;

  /// The first mebibyte of what came of the reply's body, decompressed.
  std::string takeBody() { return std::move(body_); }

  /// Says what went wrong on this side; libcurl only knows that something did.
  void fail(std::string description) { failure_ = std::move(description); }

  TransportError error(CURLcode code) const;

  /// What libcurl takes for a time-out of `seconds`.
  static long milliseconds(double seconds);

 private:
  static std::size_t receive(const char* data, std::size_t one, std::size_t length, void* transfer) noexcept;

  void setRules();

  std::string description(CURLcode code) const;

  std::array<char, CURL_ERROR_SIZE> error_{};
  std::string failure_;
  std::string body_;
  std::size_t received_ = 0;  // of the body
  CurlList headers_;
  CurlEasy easy_;
};

}  // namespace orivex::gtk
