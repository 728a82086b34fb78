#pragma once

#include "PageFileChooser.h"

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
  bool declines(const char* what) const;
  void downloadEnded(const EndedDownload& download) const;

  OVKFApi& screen_;
  PageFileChooser files_;
};

}  // namespace orivex
