#pragma once

#include <optional>
#include <string>

namespace orivex::gtk {

/// Where a redirect leads.
struct Redirect {
  std::string address;
  bool isWeb = false;        ///< http or https
  bool isSameHost = false;   ///< of the same port too, unless it leads from http to https
  bool isDowngrade = false;  ///< leads out of https

  /// What `location`, which may be relative, means in a reply from `address`. Nothing when it is no address.
  static std::optional<Redirect> of(const std::string& address, const std::string& location);
};

}  // namespace orivex::gtk
