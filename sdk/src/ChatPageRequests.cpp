#include "ChatPageRequests.h"

#include <utility>

#include "ScreenGuard.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
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
  handlers.chooseFiles = guarded(screen_, [this](const FileChooserRequest& request, ChosenFiles completion) {
    if (!declines("a choice of files")) chooseFiles(request, std::move(completion));
  });
  handlers.downloadEnded = guarded(screen_, [this](const EndedDownload& download) { downloadEnded(download); });
  handlers.leave = guarded(screen_, [this] { closeScreenIfShown(screen_); });
  return handlers;
}

// An input that takes one file gets the first; without any, and while another picker is open, it is cancelled.
void ChatPageRequests::chooseFiles(const FileChooserRequest& request, ChosenFiles completion) {
  auto answer = [this, multiple = request.multiple,
                 completion = std::move(completion)](const DocumentPickerOutcome& outcome) mutable {
    const auto* picked = std::get_if<PickedDocuments>(&outcome);
    std::move(completion)(picked ? accessible(picked->files, multiple) : std::vector<std::string>());
  };
  Platform::current().documentPicker.present({request.mimeTypes, request.multiple}, *screen_.webView(),
                                             alive_.guard(std::move(answer)));
}

std::vector<std::string> ChatPageRequests::accessible(const std::vector<Url>& files, bool multiple) {
  std::vector<std::string> paths;
  for (const auto& file : files) {
    if (!multiple && !paths.empty()) break;
    auto access = Platform::current().documentPicker.startAccess(file);
    if (const auto* failure = std::get_if<Failure>(&access)) {
      log::debugPrint("Access to the selected file was refused: " + failure->description);
    } else if (auto path = file.filePath()) {
      accesses_.push_back(std::get<std::unique_ptr<FileAccess>>(std::move(access)));
      paths.push_back(*std::move(path));
    }
  }
  return paths;
}

void ChatPageRequests::downloadEnded(const EndedDownload& download) const {
  if (declines("a message")) return;
  if (download.saved) {
    OVKFApiHelper::showNotice(tr("已保存到下载：%1", {download.fileName}), downloadNoticeSeconds);
  } else {
    OVKFApiHelper::showMessage(tr("下载失败"), downloadNoticeSeconds);
  }
}

}  // namespace orivex
