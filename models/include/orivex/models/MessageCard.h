#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orivex {

/// One key/value line of a card.
struct MessageCustomFields {
  std::optional<std::string> key{};
  std::optional<std::string> value{};

  bool operator==(const MessageCustomFields&) const = default;
};

/// One menu of a card.
struct MessageCustomMenus {
  std::optional<std::int64_t> type{};                 ///< what choosing it does, a code of the chat page's
  std::optional<std::string> title{};                 ///< label
  std::optional<std::string> command{};               ///< sent when chosen
  std::optional<std::vector<std::string>> visible{};  ///< names of the places that show it

  bool operator==(const MessageCustomMenus&) const = default;
};

/// One item of a card. Amounts are text: the page formats them.
struct MessageCustomItems {
  std::optional<std::vector<MessageCustomMenus>> customMenus{};
  std::optional<std::vector<MessageCustomFields>> customFields{};
  std::optional<std::string> customCardDesc{};
  std::optional<std::string> customCardLink{};
  std::optional<std::string> customCardName{};
  std::optional<std::string> customCardAmount{};
  std::optional<std::string> customCardThumbnail{};
  std::optional<std::string> customCardAmountSymbol{};  ///< currency symbol
  std::optional<std::string> customCardAmountName{};
  std::optional<std::string> customCardOriginalAmount{};
  std::optional<double> cellHeight{};  ///< layout state: row height in points
  std::optional<bool> isWrap{};        ///< layout state: whether the text wraps

  bool operator==(const MessageCustomItems&) const = default;
};

namespace incoming {

// A card's lines and menus have the same keys as the page reports them.
using orivex::MessageCustomFields;
using orivex::MessageCustomMenus;

/// A card's item as the page reports it, without layout state. Decode-only.
struct MessageCustomItems {
  std::optional<std::vector<orivex::MessageCustomMenus>> customMenus{};
  std::optional<std::vector<orivex::MessageCustomFields>> customFields{};
  std::optional<std::string> customCardDesc{};
  std::optional<std::string> customCardLink{};
  std::optional<std::string> customCardName{};
  std::optional<std::string> customCardAmount{};
  std::optional<std::string> customCardThumbnail{};
  std::optional<std::string> customCardAmountSymbol{};
  std::optional<std::string> customCardAmountName{};
  std::optional<std::string> customCardOriginalAmount{};

  bool operator==(const MessageCustomItems&) const = default;
};

}  // namespace incoming
}  // namespace orivex
