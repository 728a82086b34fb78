#pragma once

#include <cstdint>
#include <vector>

namespace orivex {

/// Raw bytes; in JSON they travel as Base64 text.
using Bytes = std::vector<std::uint8_t>;

}  // namespace orivex
