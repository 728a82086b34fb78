#pragma once

#include <string>
#include <string_view>

namespace orivex {

/// A JPEG as an address that holds it: "data:image/jpeg;base64," and its Base64 text. Any thread.
std::string jpegDataAddress(std::string_view jpeg);

}  // namespace orivex
