#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orivex {

/// The environment that the chat page finds in `window.extraParams`.
struct WebViewEnvModel {
  std::optional<std::string> app_name{};
  std::optional<std::string> env_name{};
  std::optional<std::int64_t> hh{};  ///< status bar height in points
  std::optional<std::int64_t> bh{};  ///< bottom safe-area inset in points
  std::optional<std::string> os_name{};

  /// The record as JSON; empty when it cannot be encoded.
  std::string getJsonString() const;

  bool operator==(const WebViewEnvModel&) const = default;
};

}  // namespace orivex
