#include "IdleWatch.h"

#include <algorithm>

#include <linux/sockios.h>
#include <sys/ioctl.h>

namespace orivex::gtk {
namespace {

// Nobody tells when the system sends what it holds, so that is looked at. A time-out comes late by this part at most.
constexpr int looksPerTimeOut = 16;

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
  return counts.waiting > 0 ? std::min(left, longest_ / looksPerTimeOut) : left;
}

IdleWatch::Counts IdleWatch::countsOf(CURL* transfer) {
  Counts counts;
  curl_easy_getinfo(transfer, CURLINFO_SIZE_UPLOAD_T, &counts.sent);
  curl_easy_getinfo(transfer, CURLINFO_SIZE_DOWNLOAD_T, &counts.received);
  curl_easy_getinfo(transfer, CURLINFO_HEADER_SIZE, &counts.headers);
  curl_socket_t socket = CURL_SOCKET_BAD;
  curl_easy_getinfo(transfer, CURLINFO_ACTIVESOCKET, &socket);
  if (socket != CURL_SOCKET_BAD && ioctl(socket, SIOCOUTQ, &counts.waiting) != 0) counts.waiting = 0;
  return counts;
}

}  // namespace orivex::gtk
