#include "orivex/testing/VirtualUserDefaults.h"

#include "ThreadCheck.h"

namespace orivex::testing {

bool VirtualUserDefaults::boolForKey(std::string_view key) const {
  requireMainThread(queue_, "UserDefaults::boolForKey");
  const auto found = values_.find(key);
  if (found == values_.end()) return false;
  const bool* value = std::get_if<bool>(&found->second);
  return value && *value;
}

std::optional<std::string> VirtualUserDefaults::stringForKey(std::string_view key) const {
  requireMainThread(queue_, "UserDefaults::stringForKey");
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  const auto* value = std::get_if<std::string>(&found->second);
  return value ? std::optional(*value) : std::nullopt;
}

void VirtualUserDefaults::remove(std::string_view key) {
  if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
}

}  // namespace orivex::testing
