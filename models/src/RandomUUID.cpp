#include "orivex/models/RandomUUID.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace orivex {

std::string randomUUID() {
  std::array<std::uint8_t, 16> bytes{};
  if (getentropy(bytes.data(), bytes.size()) != 0) {
    throw std::system_error(errno, std::generic_category(), "getentropy");
  }
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += digits[byte >> 4U];
    text += digits[byte & 0x0FU];
  }
  text[12] = '4';                            // version
  text[16] = digits[8 + (bytes[8] & 0x3U)];  // variant
  for (const std::size_t at : {8U, 13U, 18U, 23U}) text.insert(at, 1, '-');
  return text;
}

}  // namespace orivex
