#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "orivex/platform/base/Interface.h"

namespace orivex {

/// The visitor's settings by key. Main thread.
class UserDefaults : public Interface {
 public:
  /// False when the key is absent or its value is no boolean.
  virtual bool boolForKey(std::string_view key) const = 0;

  virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
};

}  // namespace orivex
