#pragma once

#include <deque>

namespace orivex {

/// Decides how often a page that loses its process is brought back: at most `most` times in any `window` seconds.
class ReloadLimit {
 public:
  static constexpr std::size_t most = 3;
  static constexpr double window = 10.0;

  /// Whether one more reload may happen at `now`, in seconds; counts it when it may.
  bool admit(double now);

 private:
  std::deque<double> times_;
};

}  // namespace orivex
