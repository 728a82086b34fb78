#pragma once

#include <chrono>
#include <optional>

#include <curl/curl.h>

namespace orivex::gtk {

/// Tells when a transfer has stood still for too long.
class IdleWatch {
 public:
  using Clock = std::chrono::steady_clock;

  /// `seconds` without a byte in either direction are too long.
  explicit IdleWatch(double seconds);

  /// Looks at `transfer`, the first time when it begins. Returns after how long to look again at the latest; nothing
  /// when it stood still for too long.
  std::optional<Clock::duration> look(CURL* transfer, Clock::time_point now);

 private:
  struct Counts {
    curl_off_t sent = 0;
    curl_off_t received = 0;
    long headers = 0;
    bool operator==(const Counts&) const = default;
  };
  static Counts countsOf(CURL* transfer);

  Clock::duration longest_;
  std::optional<Clock::time_point> lastMoved_;
  Counts last_;
};

}  // namespace orivex::gtk
