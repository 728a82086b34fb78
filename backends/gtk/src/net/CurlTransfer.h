#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CurlHandles.h"
#include "Redirect.h"

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

  /// Where it is sent, the next time that it is.
  const std::string& address() const { return address_; }

  /// Set from any thread, it ends the transfer at the next check, with the code `cancelled`.
  using Flag = std::shared_ptr<std::atomic<bool>>;
  const Flag& stop() const { return stop_; }
  static constexpr CURLcode cancelled = CURLE_ABORTED_BY_CALLBACK;

  /// Seconds without a move after which it is given up.
  double idleSeconds() const { return idleSeconds_; }

  /// The proxies that lead to the address, in libcurl's words, to be tried in this order; without any, those of the
  /// environment.
  void setProxies(std::vector<std::string> proxies);

  /// Does what may block, before libcurl begins. A code other than CURLE_OK ends the transfer with that code.
  virtual CURLcode prepare();

  /// For how long the transfer may stay where it is, which the first call after `prepare` begins to measure; nothing
  /// once it has timed out. Called whenever something may have moved.
  std::optional<Clock::duration> timeLeft(Clock::time_point now);

  /// Whether libcurl shall begin again, as no connection came about by the proxy that it had.
  bool takesNextProxy(CURLcode code);

  /// Whether libcurl shall begin again at another address, the new `address`, as the reply says.
  bool isRedirected(CURLcode code);

  /// Reports how the transfer ended. Once.
  virtual void finish(CURLcode code) = 0;

 protected:
  CurlTransfer(const Url& url, const std::vector<HttpHeader>& headers, double idleSeconds);

  /// A number that changes whenever the transfer moves on.
  virtual std::int64_t position() = 0;

  /// Whether to go on once the final reply's head is there.
  virtual bool wantsBody() const { return true; }

  /// Whether to go where the final reply says; `fail` makes it an error.
  virtual bool follows(const Redirect& redirect) = 0;

  /// Of the reply's status line that came last, 1xx included; 0 before the first.
  int status() const;

  /// Whether the final reply's head is there as a whole.
  bool hasHead() const { return hasHead_; }

  /// Whether the reply is that of a proxy that wants to know who asks.
  bool isRefusedByProxy() const;

  /// The first mebibyte of what came of the reply's body, decompressed.
  std::string takeBody() { return std::move(body_); }

  /// Says what went wrong on this side, in English; libcurl only knows that something did.
  void fail(CURLcode code, std::string detail) { failure_ = {code, std::move(detail)}; }
  bool hasFailed() const { return failure_.code != CURLE_OK; }

  TransportError error(CURLcode code) const;

  /// What libcurl takes for a time-out of `seconds`.
  static long milliseconds(double seconds);

 private:
  struct Failure {
    CURLcode code = CURLE_OK;
    std::string detail;
  };

  static std::size_t receive(const char* data, std::size_t one, std::size_t length, void* transfer) noexcept;
  static std::size_t receiveHead(const char* line, std::size_t one, std::size_t length, void* transfer) noexcept;

  void setRules();
  std::string location() const;

  std::string address_;
  double idleSeconds_;
  std::optional<Clock::time_point> lastMoved_;
  std::int64_t lastPosition_ = 0;
  std::vector<std::string> proxies_;  // the one in use and those to try next
  int redirects_ = 0;
  Flag stop_ = std::make_shared<std::atomic<bool>>(false);
  bool hasHead_ = false;
  std::array<char, CURL_ERROR_SIZE> error_{};
  Failure failure_;
  std::string body_;
  std::size_t received_ = 0;  // of the body
  CurlList headers_;
  CurlEasy easy_;
};

}  // namespace orivex::gtk
