#pragma once

#include <cstdint>
#include <map>
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

/// A tracking event of the chat page.
struct TrackModel {
  std::optional<std::string> name{};
  std::optional<std::map<std::string, std::string>> attributes{};

  bool operator==(const TrackModel&) const = default;
};

/// The environment that the chat page finds in `window.extraParams`.
struct WebViewEnvModel {
  std::optional<std::string> app_name{};
  std::optional<std::string> env_name{};
  std::optional<std::int64_t> hh{};  ///< status bar height in points
  std::optional<std::int64_t> bh{};  ///< bottom safe-area inset in points
  std::optional<std::string> os_name{};

  /// The record as JSON; empty when it cannot be encoded.
  std::string getJsonString() const;

  bool operator==(const WebViewEnvModel&) const = default;
};

}  // namespace orivex
