#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orivex {

/// One menu of a card.
struct MessageCustomMenus {
  std::optional<std::int64_t> type{};                 ///< what choosing it does, a code of the chat page's
  std::optional<std::string> title{};                 ///< label
  std::optional<std::string> command{};               ///< sent when chosen
  std::optional<std::vector<std::string>> visible{};  ///< names of the places that show it

  bool operator==(const MessageCustomMenus&) const = default;
};

namespace incoming {
/// A card's menu as the page reports it: the same keys.
using orivex::MessageCustomMenus;
}  // namespace incoming
}  // namespace orivex
