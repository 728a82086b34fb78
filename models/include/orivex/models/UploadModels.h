#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orivex {

/// What kind of attachment an `UploadFileInfoModel` describes.
enum class FileType { File, Image, Video, Record };

/// The text that stands for a kind in JSON.
constexpr std::string_view rawValue(FileType type) {
  constexpr std::array<std::string_view, 4> texts{"File", "Image", "Video", "Record"};
  return texts[static_cast<std::size_t>(type)];
}

/// An attachment as the chat page is told of it.
struct UploadFileInfoModel {
  std::optional<std::string> name{};       ///< display name
  std::string type;                        ///< `rawValue` of a `FileType`
  std::optional<std::string> url{};        ///< on the server once uploaded, or a local address
  std::optional<std::string> base64Str{};  ///< image as a data URL
  std::optional<double> height{};          ///< pixels
  std::optional<double> width{};           ///< pixels
  std::optional<double> duration{};        ///< seconds
  std::string suffix;                      ///< file name extension
  std::optional<std::int64_t> size{};      ///< bytes
  std::optional<std::string> mimeType{};

  bool operator==(const UploadFileInfoModel&) const = default;
};

/// The chat server's answer to an upload that it stored. Every key is required.
struct UploadResposeModel {
  std::string url;
  std::string inputContentType;   ///< MIME type as sent
  std::string actualContentType;  ///< MIME type as the server found it

  bool operator==(const UploadResposeModel&) const = default;
};

/// The chat server's answer with an error status.
struct FailModel {
  std::optional<std::string> msg{};  ///< for the visitor to read

  bool operator==(const FailModel&) const = default;
};

}  // namespace orivex
