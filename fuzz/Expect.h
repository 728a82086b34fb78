#pragma once

#include <cstdio>
#include <cstdlib>

namespace orivex::fuzz {

/// Stops the process, which the fuzzer reports together with its input, unless what must hold does.
inline void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace orivex::fuzz
