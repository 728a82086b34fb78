#pragma once

#include <cstddef>

namespace orivex::bench {

/// How often this process has asked for memory so far.
std::size_t allocationCount();

}  // namespace orivex::bench
