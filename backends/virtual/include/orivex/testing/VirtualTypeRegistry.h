#pragma once

#include <map>
#include <string>

#include "orivex/platform/ports/TypeRegistry.h"

namespace orivex::testing {

/// Knows the kinds of files that a test names; a file's type identifier is the MIME type of its extension. At first it
/// knows gif, jpeg, jpg, mp4, pdf, png, txt, wav and webp.
class VirtualTypeRegistry final : public TypeRegistry {
 public:
  std::optional<std::string> mimeType(std::string_view extension) const override;
  std::variant<std::string, Failure> typeIdentifier(const std::string& path) const override;
  bool conformsToImage(const std::string& typeIdentifier) const override;

  /// `extension` in lower case.
  void add(std::string extension, std::string mimeType) {
    types_.insert_or_assign(std::move(extension), std::move(mimeType));
  }

  /// Asking for the type of `path` fails from now on.
  void fail(const std::string& path, std::string reason) { failures_.insert_or_assign(path, std::move(reason)); }

 private:
  std::map<std::string, std::string, std::less<>> types_{
      {"gif", "image/gif"},  {"jpeg", "image/jpeg"},     {"jpg", "image/jpeg"},
      {"mp4", "video/mp4"},  {"pdf", "application/pdf"}, {"png", "image/png"},
      {"txt", "text/plain"}, {"wav", "audio/x-wav"},     {"webp", "image/webp"}};
  std::map<std::string, std::string> failures_;
};

}  // namespace orivex::testing
