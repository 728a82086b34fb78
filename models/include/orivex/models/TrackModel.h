#pragma once

#include <map>
#include <optional>
#include <string>

namespace orivex {

/// A tracking event of the chat page.
struct TrackModel {
  std::optional<std::string> name{};
  std::optional<std::map<std::string, std::string>> attributes{};

  bool operator==(const TrackModel&) const = default;
};

}  // namespace orivex
