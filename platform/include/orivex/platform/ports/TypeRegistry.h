#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Interface.h"

namespace orivex {

/// What the device knows about kinds of files. Any thread.
class TypeRegistry : public Interface {
 public:
  /// The usual MIME type of files with this extension, written without its dot and in any case; nothing when the
  /// extension is unknown.
  virtual std::optional<std::string> mimeType(std::string_view extension) const = 0;

  /// The type of the file at `path` by its name and, where that does not tell, by its first bytes. May block.
  virtual std::variant<std::string, Failure> typeIdentifier(const std::string& path) const = 0;

  /// Whether files of this type are pictures.
  virtual bool conformsToImage(const std::string& typeIdentifier) const = 0;
};

}  // namespace orivex
