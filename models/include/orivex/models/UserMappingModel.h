#pragma once

#include <optional>
#include <string>

#include "orivex/Export.h"

namespace orivex {

/// Who the visitor is, told by the host. Shared by reference between host and component: hold it in a
/// `std::shared_ptr`.
struct UserMappingModel {
  std::optional<std::string> identity_id{};   ///< the host's own identifier of the visitor
  std::optional<std::string> visitor_name{};  ///< display name
  std::optional<std::string> phone{};
  std::optional<std::string> email{};
  std::optional<std::string> deviceId{};  ///< filled in when a session starts with it absent or empty
  std::optional<std::string> app_id{};    ///< the host application's identifier
  std::optional<std::string> app_name{};  ///< the host application's name
  std::optional<std::string> env_name{};  ///< the host's environment

  /// The record's share of the chat page's address: identity, device, application and environment as URL query pairs,
  /// an absent field as empty text. Values are inserted as they are, without percent-encoding, so that a host may pass
  /// an encoded value; name, phone and e-mail stay out of addresses.
  ORIVEX_API std::string toURLQuery() const;

  /// The record as JSON; nothing when it cannot be encoded.
  ORIVEX_API std::optional<std::string> getJsonString() const;

  bool operator==(const UserMappingModel&) const = default;
};

}  // namespace orivex
