#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/UserDefaults.h"

namespace orivex::testing {

/// Settings that a test writes.
class VirtualUserDefaults final : public UserDefaults {
 public:
  explicit VirtualUserDefaults(const MainQueue& queue) : queue_(queue) {}

  bool boolForKey(std::string_view key) const override;
  std::optional<std::string> stringForKey(std::string_view key) const override;

  void setBool(std::string_view key, bool value) { values_.insert_or_assign(std::string(key), value); }
  void setString(std::string_view key, std::string value) {
    values_.insert_or_assign(std::string(key), std::move(value));
  }
  void remove(std::string_view key);

 private:
  const MainQueue& queue_;
  std::map<std::string, std::variant<bool, std::string>, std::less<>> values_;
};

}  // namespace orivex::testing
