#include "IdleWatch.h"

#include <algorithm>

namespace orivex::gtk {
namespace {

// Some thirty years, which the clock can still add.
constexpr double longestSeconds = 1e9;

}  // namespace

IdleWatch::IdleWatch(double seconds)
    : longest_(std::chrono::duration_cast<Clock::duration>(
          std::chrono::duration<double>(std::clamp(seconds, 0.0, longestSeconds)))) {}

std::optional<IdleWatch::Clock::duration> IdleWatch::look(std::int64_t position, Clock::time_point now) {
  if (!lastMoved_ || position != position_) lastMoved_ = now;
  position_ = position;
  const auto left = *lastMoved_ + longest_ - now;
  if (left <= Clock::duration::zero()) return std::nullopt;
  return left;
}

}  // namespace orivex::gtk
