#include "DataAddress.h"

#include <cstdint>
#include <span>

#include "orivex/models/Base64.h"

namespace orivex {

std::string jpegDataAddress(std::string_view jpeg) {
  constexpr std::string_view prefix = "data:image/jpeg;base64,";
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(jpeg.data()), jpeg.size());
  std::string address(prefix.size() + base64Length(bytes.size()), '\0');
  prefix.copy(address.data(), prefix.size());
  base64Encode(bytes, address.data() + prefix.size());
  return address;
}

}  // namespace orivex
