#include "orivex/testing/VirtualTypeRegistry.h"

#include <algorithm>

namespace orivex::testing {

std::optional<std::string> VirtualTypeRegistry::mimeType(std::string_view extension) const {
  std::string lower(extension);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter; });
  const auto found = types_.find(lower);
  return found == types_.end() ? std::nullopt : std::optional(found->second);
}

std::variant<std::string, Failure> VirtualTypeRegistry::typeIdentifier(const std::string& path) const {
  if (const auto failure = failures_.find(path); failure != failures_.end()) return Failure{failure->second};
  const auto dot = path.rfind('.');
  return mimeType(dot == std::string::npos ? "" : path.substr(dot + 1)).value_or("application/octet-stream");
}

bool VirtualTypeRegistry::conformsToImage(const std::string& typeIdentifier) const {
  return typeIdentifier.starts_with("image/");
}

}  // namespace orivex::testing
