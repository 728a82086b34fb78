#pragma once

#include "orivex/platform/ports/TypeRegistry.h"

namespace orivex::gtk {

/// The desktop's shared database of file types, as GIO reads it. Type identifiers are MIME types.
class GioTypeRegistry final : public TypeRegistry {
 public:
  std::optional<std::string> mimeType(std::string_view extension) const override;

  /// Never waits for the other end of a pipe; a slow disk or a network share may take its time.
  std::variant<std::string, Failure> typeIdentifier(const std::string& path) const override;

  bool conformsToImage(const std::string& typeIdentifier) const override;
};

}  // namespace orivex::gtk
