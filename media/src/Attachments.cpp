#include "Attachments.h"

#include <filesystem>

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex {
namespace {

std::string quoted(std::int64_t limit) {
  constexpr std::int64_t mebibyte = 1048576;
  return std::to_string(limit / mebibyte) + " MB";
}

}  // namespace

std::string fileName(const std::string& path) {
  auto name = std::filesystem::path(path).filename().string();
  return validUtf8(name.empty() ? path : name);
}

std::string fileExtension(const std::string& path) {
  const auto extension = std::filesystem::path(path).extension().string();
  return extension.empty() ? "" : validUtf8(extension.substr(1));
}

bool stillShows(const std::weak_ptr<ViewController>& screen) {
  const auto kept = screen.lock();
  if (!kept || !kept->view()->isShowing()) return false;
  Platform::current().progressOverlay.bringTo(*kept->view());
  return true;
}

void tellAboutAttachment(const std::weak_ptr<ViewController>& screen, const std::string& message) {
  if (stillShows(screen)) return OVKFApiHelper::showMessage(message, attachmentMessageSeconds);
  log::print("A screen that does not show has nothing to tell: " + message);
}

void tellAboutFailedUpload(const std::weak_ptr<ViewController>& screen, const std::string& message, Task sendAgain) {
  log::debugPrint("Upload Failed: " + message);
  tellAboutAttachment(screen, message);
  if (stillShows(screen)) UploadManager::keep(*screen.lock()->view(), std::move(sendAgain));
}

std::string documentTooLargeText(std::int64_t documentLimit) {
  return "选择的文件大小不能超过 " + quoted(documentLimit);
}

std::string videoTooLargeText(std::int64_t documentLimit) {
  return "选择的视频文件大小不能超过 " + quoted(documentLimit);
}

}  // namespace orivex
