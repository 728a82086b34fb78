#pragma once

#include <optional>
#include <string>

namespace orivex {

/// One key/value line of a card.
struct MessageCustomFields {
  std::optional<std::string> key{};
  std::optional<std::string> value{};

  bool operator==(const MessageCustomFields&) const = default;
};

namespace incoming {
/// A card's key/value line as the page reports it: the same keys.
using orivex::MessageCustomFields;
}  // namespace incoming
}  // namespace orivex
