#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <webkit/webkit.h>

#include "orivex/platform/ports/WebEngine.h"

namespace orivex::gtk {

/// The last part of a path, out of a name that a page suggests: no separators, no control or direction characters, no
/// leading dots, at most 200 bytes with the extension kept; "download" when nothing is left.
std::string safeFileName(std::string_view suggested);

/// The downloads of the component's pages. One outlives the page that asked for it, as its visitor expects; what is
/// under way when this object goes is broken off.
class PageDownloads {
 public:
  using Ended = std::function<void(const EndedDownload&)>;

  PageDownloads();
  PageDownloads(const PageDownloads&) = delete;
  PageDownloads& operator=(const PageDownloads&) = delete;
  ~PageDownloads();

  /// Saves `download`, which has just started, in the visitor's folder for downloads, or in the component's own data
  /// folder where that takes no files, under a name of its own; `ended` is called once.
  void save(WebKitDownload* download, Ended ended);

 private:
  class Download;

  std::vector<std::unique_ptr<Download>> downloads_;
};

}  // namespace orivex::gtk
