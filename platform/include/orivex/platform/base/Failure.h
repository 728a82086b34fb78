#pragma once

#include <string>

namespace orivex {

/// Why something did not succeed, in words for the log.
struct Failure {
  std::string description;
  bool operator==(const Failure&) const = default;
};

}  // namespace orivex
