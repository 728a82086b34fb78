#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace orivex::devserver {

/// A display name that can be a file name anywhere: the last component of a path, valid UTF-8 of at most 120 bytes,
/// without control characters, and never hidden or empty.
[[nodiscard]] std::string safeFileName(std::string_view name);

/// The folder of uploaded files. A stored name is sixteen hexadecimal digits, a hyphen and the file's safe name.
class FileStore {
 public:
  /// Uses `folder`, made when missing; without one a fresh folder that is removed with the store. Throws
  /// std::filesystem::filesystem_error when it cannot be used.
  explicit FileStore(const std::optional<std::filesystem::path>& folder);
  FileStore(const FileStore&) = delete;
  FileStore& operator=(const FileStore&) = delete;
  ~FileStore();

  /// Stores a file; returns its stored name, or nothing when the disk does not take it. `givenType` is the MIME type
  /// that the sender named; it serves when neither name nor content tells one.
  [[nodiscard]] std::optional<std::string> add(std::string_view fileName, const std::string& givenType,
                                               std::string_view contents);

  /// The path of a stored file; absent when `storedName` is no name of this store or no file.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view storedName) const;

  /// The MIME type by name and first bytes, else the sender's, else "application/octet-stream".
  [[nodiscard]] std::string typeOf(const std::string& storedName) const;

  /// The file's own name.
  [[nodiscard]] static std::string_view displayName(std::string_view storedName);

 private:
  const bool temporary_;
  const std::filesystem::path folder_;
  std::unordered_map<std::string, std::string> givenTypes_;
};

}  // namespace orivex::devserver
