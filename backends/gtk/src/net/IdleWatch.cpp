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

std::optional<IdleWatch::Clock::duration> IdleWatch::look(CURL* transfer, Clock::time_point now) {
  const Counts counts = countsOf(transfer);
  if (!lastMoved_ || counts != last_) lastMoved_ = now;
  last_ = counts;
  const auto left = *lastMoved_ + longest_ - now;
  if (left <= Clock::duration::zero()) return std::nullopt;
  return left;
}

IdleWatch::Counts IdleWatch::countsOf(CURL* transfer) {
  Counts counts;
  curl_easy_getinfo(transfer, CURLINFO_SIZE_UPLOAD_T, &counts.sent);
  curl_easy_getinfo(transfer, CURLINFO_SIZE_DOWNLOAD_T, &counts.received);
  curl_easy_getinfo(transfer, CURLINFO_HEADER_SIZE, &counts.headers);
  return counts;
}

}  // namespace orivex::gtk
