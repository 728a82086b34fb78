#include "orivex/models/RandomUUID.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>

#include <pthread.h>
#include <sys/random.h>

namespace orivex {
namespace {

using UUIDBytes = std::array<std::uint8_t, 16>;

/// How often this process has come out of a fork. What was drawn before belongs to the parent.
std::atomic<unsigned> forks{0};

/// The system's random bytes, drawn for 16 UUIDs at a time: asking for them takes longer than decoding a message. Up to
/// 256 bytes are given whole or not at all.
class Reservoir {
 public:
  UUIDBytes draw() {
    if (taken == bytes.size() || drawnAfter != forks.load(std::memory_order_relaxed)) refill();
    UUIDBytes drawn;
    const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(taken);
    std::copy_n(from, drawn.size(), drawn.begin());
    taken += drawn.size();
    return drawn;
  }

 private:
  void refill() {
    static const bool countsForks =
        pthread_atfork(nullptr, nullptr, [] { forks.fetch_add(1, std::memory_order_relaxed); }) == 0;
    drawnAfter = forks.load(std::memory_order_relaxed);
    while (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
      if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "getrandom");
    }
    // Unable to tell a fork, do not keep what a child might use again.
    taken = countsForks ? 0 : bytes.size() - UUIDBytes().size();
  }

  std::array<std::uint8_t, 256> bytes{};
  std::size_t taken = bytes.size();
  unsigned drawnAfter = 0;
};

}  // namespace

std::string randomUUID() {
  thread_local Reservoir reservoir;
  UUIDBytes bytes = reservoir.draw();
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);  // version
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);  // variant

  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view shape = "........-....-....-....-............";
  std::string text(shape);
  std::size_t nibble = 0;
  for (char& c : text) {
    if (c == '-') continue;
    const unsigned byte = bytes[nibble / 2];
    c = digits[nibble % 2 == 0 ? byte >> 4U : byte & 0x0FU];
    ++nibble;
  }
  return text;
}

}  // namespace orivex
