#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orivex {

/// A shortcut that the visitor chose in the page, for the host.
struct ShortcutsModel {
  std::optional<std::string> title{};          ///< label
  std::optional<std::int64_t> shortcutType{};  ///< kind, a code of the chat page's
  std::optional<std::string> command{};        ///< what the shortcut stands for

  bool operator==(const ShortcutsModel&) const = default;
};

}  // namespace orivex
