#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orivex/platform/base/Interface.h"

namespace orivex {

using InfoValue = std::variant<std::string, double, bool>;
using InfoDictionary = std::map<std::string, InfoValue, std::less<>>;

/// A folder of resources with information about its owner: the host application's (the main bundle) or this
/// component's. Main thread.
class Bundle : public Interface {
 public:
  /// Nothing when the bundle is missing or carries no information.
  virtual const std::optional<InfoDictionary>& infoDictionary() const = 0;

  /// Path of the readable file "name.type"; nothing when there is none.
  virtual std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const = 0;
};

}  // namespace orivex
