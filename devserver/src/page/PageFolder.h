#pragma once

#include <filesystem>
#include <string_view>

#include <libsoup/soup.h>

namespace orivex::devserver {

/// A developer's own chat page: a folder with an index.html.
class PageFolder {
 public:
  /// Throws std::runtime_error when the folder holds no index.html.
  explicit PageFolder(std::filesystem::path folder);

  /// Answers with the index.html. A script in front of it tells /_dev/posts what the page posts to the native side.
  void serveIndex(SoupServerMessage* message) const;

  /// Answers with a file by its path below the folder.
  void serve(SoupServerMessage* message, std::string_view path) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace orivex::devserver
