#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace orivex::devserver {

/// Which access tokens the server takes.
class Tokens {
 public:
  /// With a list only its tokens pass; without one, every token that is neither empty nor expired.
  explicit Tokens(std::vector<std::string> accepted) : accepted_(std::move(accepted)) {}

  /// Empty when `token` passes, else the reason for the visitor's developer.
  [[nodiscard]] std::string_view refusal(std::string_view token) const {
    if (token.empty()) return "access token missing";
    if (token == "expired" || token.starts_with("expired-")) return "access token expired";
    if (!accepted_.empty() && std::ranges::find(accepted_, token) == accepted_.end()) return "access token unknown";
    return {};
  }

  /// A token that passes.
  [[nodiscard]] std::string example() const { return accepted_.empty() ? "demo" : accepted_.front(); }

 private:
  std::vector<std::string> accepted_;
};

}  // namespace orivex::devserver
