#include "DataAddress.h"

#include <cstdint>

#include "orivex/models/Base64.h"

namespace orivex {

std::string jpegDataAddress(std::string_view jpeg) {
  std::string address = "data:image/jpeg;base64,";
  appendBase64(address, {reinterpret_cast<const std::uint8_t*>(jpeg.data()), jpeg.size()});
  return address;
}

}  // namespace orivex
