#include "Tokens.h"

#include <algorithm>

namespace orivex::devserver {

std::string_view Tokens::refusal(std::string_view token) const {
  if (token.empty()) return "access token missing";
  if (token == "expired" || token.starts_with("expired-")) return "access token expired";
  if (!accepted_.empty() && std::ranges::find(accepted_, token) == accepted_.end()) return "access token unknown";
  return {};
}

}  // namespace orivex::devserver
