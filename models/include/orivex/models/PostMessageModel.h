#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orivex {

/// A picker or recording request of the chat page. Never changed once decoded: pass it as const.
struct PostMessageModel {
  std::string deviceId;                                 ///< required: the visitor's identifier as the page knows it
  std::optional<std::int64_t> fileSize{};               ///< size limit in bytes
  std::optional<std::string> action{};                  ///< recording: "start", "end", "cancel", "hold" or "recover"
  std::optional<std::vector<std::string>> mimeTypes{};  ///< further MIME types that the document picker accepts

  bool operator==(const PostMessageModel&) const = default;
};

}  // namespace orivex
