#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

#include "orivex/platform/ports/WebEngine.h"

namespace orivex::gtk {

/// The downloads of the component's pages. One outlives the page that asked for it, as its visitor expects; what is
/// under way when this object goes is broken off.
class PageDownloads {
 public:
  using Ended = std::function<void(const EndedDownload&)>;

  PageDownloads();
  PageDownloads(const PageDownloads&) = delete;
  PageDownloads& operator=(const PageDownloads&) = delete;
  ~PageDownloads();

  /// Saves `download`, which has just started, to `downloadFolder()` under a name of its own; `ended` is called once.
  void take(WebKitDownload* download, Ended ended);

 private:
  class Download;

  void forget(const Download* download);

  std::vector<std::unique_ptr<Download>> downloads_;
};

}  // namespace orivex::gtk
