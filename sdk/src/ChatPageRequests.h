#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/WebEngine.h"

namespace orivex {

class OVKFApi;

/// Serves what the chat page asks of its surroundings: other windows open outside of the application as the page's
/// "openUrl" does, files come from the document picker, and of downloads the visitor is told. A visitor who wants to
/// leave a page that hangs leaves the screen.
class ChatPageRequests {
 public:
  /// `screen` owns this object.
  explicit ChatPageRequests(OVKFApi& screen) : screen_(screen) {}

  /// What serves each request.
  PageRequestHandlers handlers();

 private:
  using ChosenFiles = Once<void(std::vector<std::string> paths)>;

  bool declines(const char* what) const;
  void chooseFiles(const FileChooserRequest& request, ChosenFiles completion);
  std::vector<std::string> accessible(const std::vector<Url>& files, bool multiple);
  void downloadEnded(const EndedDownload& download) const;

  OVKFApi& screen_;
  std::vector<std::unique_ptr<FileAccess>> accesses_;  // kept: nobody tells when the page has read enough
  Alive alive_;
};

}  // namespace orivex
