#include "ChatPageRequests.h"

#include <utility>

#include "orivex/media/OVKFApiHelper.h"

namespace orivex {
namespace {

constexpr double downloadNoticeSeconds = 3.0;

}  // namespace

void ChatPageRequests::openWindow(const std::string& url) {
  OVKFApiHelper::openExternalURL(url);
}

void ChatPageRequests::chooseFiles(const FileChooserRequest& request,
                                   Once<void(std::vector<std::string> paths)> completion) {
  files_.choose(request, page_, std::move(completion));
}

void ChatPageRequests::downloadEnded(const EndedDownload& download) {
  if (download.saved) {
    OVKFApiHelper::showNotice("已保存到下载：" + download.fileName, downloadNoticeSeconds);
  } else {
    OVKFApiHelper::showMessage("下载失败", downloadNoticeSeconds);
  }
}

}  // namespace orivex
