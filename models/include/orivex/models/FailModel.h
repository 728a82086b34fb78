#pragma once

#include <optional>
#include <string>

namespace orivex {

/// The chat server's answer with an error status.
struct FailModel {
  std::optional<std::string> msg{};  ///< for the visitor to read

  bool operator==(const FailModel&) const = default;
};

}  // namespace orivex
