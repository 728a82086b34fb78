#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orivex/models/MessageCustomFields.h"
#include "orivex/models/MessageCustomMenus.h"

namespace orivex {

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
