#include "ChatPageRequests.h"

#include <utility>

#include "Closing.h"
#include "ScreenGuard.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex {
namespace {

constexpr double downloadNoticeSeconds = 3.0;

}  // namespace

// A page whose screen does not show opens nothing over what does.
bool ChatPageRequests::declines(const char* what) const {
  if (screen_.webView()->isShowing()) return false;
  log::print(std::string("A screen that does not show was declined ") + what);
  return true;
}

PageRequestHandlers ChatPageRequests::handlers() {
  PageRequestHandlers handlers;
  handlers.openWindow = guarded(screen_, [this](const std::string& url) {
    if (!declines("a window")) OVKFApiHelper::openExternalURL(url);
  });
  handlers.chooseFiles =
      guarded(screen_, [this](const FileChooserRequest& request, PageFileChooser::Completion completion) {
        if (!declines("a choice of files")) files_.choose(request, *screen_.webView(), std::move(completion));
      });
  handlers.downloadEnded = guarded(screen_, [this](const EndedDownload& download) { downloadEnded(download); });
  handlers.leave = guarded(screen_, [this] { closeScreenIfShown(screen_); });
  return handlers;
}

void ChatPageRequests::downloadEnded(const EndedDownload& download) const {
  if (declines("a message")) return;
  if (download.saved) {
    OVKFApiHelper::showNotice("已保存到下载：" + download.fileName, downloadNoticeSeconds);
  } else {
    OVKFApiHelper::showMessage("下载失败", downloadNoticeSeconds);
  }
}

}  // namespace orivex
