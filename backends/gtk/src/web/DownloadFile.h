#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orivex::gtk {

/// The last part of a path, out of a name that a page suggests: no separators, no control or direction characters, no
/// leading dots, at most 200 bytes with the extension kept; "download" when nothing is left.
std::string safeFileName(std::string_view suggested);

/// The visitor's folder for downloads; the component's own data folder when there is none or it takes no files. It
/// exists. Nothing when neither can be had.
std::optional<std::filesystem::path> downloadFolder();

/// A file that belongs to one download: it is made at once, so that nobody else can take its name, and goes with this
/// object unless it is kept.
class DownloadFile {
 public:
  /// Takes over a file that exists.
  explicit DownloadFile(std::filesystem::path path) : path_(std::move(path)) {}

  /// An empty file in `folder` under `name`, or, where that is taken, under "name (2).ext" and so on. Null when the
  /// folder takes none.
  [[nodiscard]] static std::unique_ptr<DownloadFile> make(const std::filesystem::path& folder, const std::string& name);

  DownloadFile(const DownloadFile&) = delete;
  DownloadFile& operator=(const DownloadFile&) = delete;
  ~DownloadFile();

  const std::filesystem::path& path() const { return path_; }

  /// The download is complete.
  void keep() { kept_ = true; }

 private:
  const std::filesystem::path path_;
  bool kept_ = false;
};

}  // namespace orivex::gtk
