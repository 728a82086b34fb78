#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace orivex::gtk {

/// Tells when something has stood still for too long.
class IdleWatch {
 public:
  using Clock = std::chrono::steady_clock;

  /// `seconds` without a move are too long.
  explicit IdleWatch(double seconds);

  /// Looks at a number that changes with every move; the first look begins the watch. Returns after how long to look
  /// again at the latest; nothing when it has been the same for too long.
  std::optional<Clock::duration> look(std::int64_t position, Clock::time_point now);

  /// Begins anew with the next look.
  void restart() { lastMoved_.reset(); }

 private:
  Clock::duration longest_;
  std::optional<Clock::time_point> lastMoved_;
  std::int64_t position_ = 0;
};

}  // namespace orivex::gtk
