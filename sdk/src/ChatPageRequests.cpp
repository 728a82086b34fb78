#include "ChatPageRequests.h"

#include <utility>

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/base/Log.h"

namespace orivex {
namespace {

constexpr double downloadNoticeSeconds = 3.0;

}  // namespace

// A page whose screen does not show opens nothing over what does.
bool ChatPageRequests::declines(const char* what) const {
  if (page_.isShowing()) return false;
  log::print(std::string("A screen that does not show was declined ") + what);
  return true;
}

void ChatPageRequests::openWindow(const std::string& url) {
  if (!declines("a window")) OVKFApiHelper::openExternalURL(url);
}

void ChatPageRequests::chooseFiles(const FileChooserRequest& request,
                                   Once<void(std::vector<std::string> paths)> completion) {
  if (!declines("a choice of files")) files_.choose(request, page_, std::move(completion));
}

void ChatPageRequests::downloadEnded(const EndedDownload& download) {
  if (declines("a message")) return;
  if (download.saved) {
    OVKFApiHelper::showNotice("已保存到下载：" + download.fileName, downloadNoticeSeconds);
  } else {
    OVKFApiHelper::showMessage("下载失败", downloadNoticeSeconds);
  }
}

}  // namespace orivex
