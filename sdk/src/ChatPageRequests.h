#pragma once

#include <functional>

#include "PageFileChooser.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex {

/// Serves what the chat page asks of its surroundings: other windows open outside of the application as the page's
/// "openUrl" does, files come from the document picker, and of downloads the visitor is told. A visitor who wants to
/// leave a page that hangs leaves the screen.
class ChatPageRequests : public WebUIDelegate {
 public:
  /// `page` outlives this object; `close` sends the screen away.
  ChatPageRequests(View& page, std::function<void()> close) : page_(page), close_(std::move(close)) {}

  void openWindow(const std::string& url) override;
  void chooseFiles(const FileChooserRequest& request, Once<void(std::vector<std::string> paths)> completion) override;
  void downloadEnded(const EndedDownload& download) override;
  void leave() override { close_(); }

 private:
  bool declines(const char* what) const;

  View& page_;
  std::function<void()> close_;
  PageFileChooser files_;
};

}  // namespace orivex
