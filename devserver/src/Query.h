#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orivex::devserver {

/// The first value of `name` in the query of an address, percent-decoded; a broken escape leaves the value as it came.
/// "+" stays a plus: the component puts its values into the query as they are.
[[nodiscard]] std::optional<std::string> queryValue(std::string_view query, std::string_view name);

}  // namespace orivex::devserver
