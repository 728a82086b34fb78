#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orivex {

/// The texts of one language, as `msgfmt` compiles them.
class Catalogue {
 public:
  /// Nothing when there is no such file, or when it is damaged.
  static std::optional<Catalogue> read(const std::string& path);

  /// Of a text with plural forms the one for `number`. Null when the text is not in it; otherwise valid for as long as
  /// this object.
  const char* find(std::string_view text, unsigned long number = 1) const;

 private:
  Catalogue() = default;

  std::map<std::string, std::string, std::less<>> texts_;  // forms of a plural with a zero byte between
  std::string pluralRule_;
};

}  // namespace orivex
