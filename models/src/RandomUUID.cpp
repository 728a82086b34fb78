#include "orivex/models/RandomUUID.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>

#include <sys/random.h>

namespace orivex {

std::string randomUUID() {
  std::array<std::uint8_t, 16> bytes{};
  // So few bytes are given whole or not at all.
  while (getrandom(bytes.data(), bytes.size(), 0) < 0) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "getrandom");
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);  // version
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);  // variant

  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text = "........-....-....-....-............";
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
