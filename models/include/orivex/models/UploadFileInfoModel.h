#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orivex {

/// What kind of attachment an `UploadFileInfoModel` describes.
enum class FileType { File, Image, Video, Record };

/// The text that stands for a kind in JSON.
constexpr std::string_view rawValue(FileType type) {
  switch (type) {
    case FileType::File:
      return "File";
    case FileType::Image:
      return "Image";
    case FileType::Video:
      return "Video";
    case FileType::Record:
      return "Record";
  }
  return {};
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

}  // namespace orivex
