#pragma once

#include "PageFileChooser.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex {

/// Serves what the chat page asks of its surroundings: other windows open outside of the application as the page's
/// "openUrl" does, files come from the document picker, and of downloads the visitor is told.
class ChatPageRequests : public WebUIDelegate {
 public:
  /// `page` outlives this object.
  explicit ChatPageRequests(View& page) : page_(page) {}

  void openWindow(const std::string& url) override;
  void chooseFiles(const FileChooserRequest& request, Once<void(std::vector<std::string> paths)> completion) override;
  void downloadEnded(const EndedDownload& download) override;

 private:
  View& page_;
  PageFileChooser files_;
};

}  // namespace orivex
