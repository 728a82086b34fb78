#include "orivex/media/ChatManager.h"

#include <utility>

#include "PickedFiles.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/platform/ui/ViewController.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

constexpr double usualQuality = 0.7;  // of a JPEG
constexpr double originalQuality = 1.0;

constexpr int mostAtOnce = 9;

// The same field of the request means another limit here than for documents: each picker guards its own kind of file.
void storeMediaRequest(const PostMessageModel& request) {
  auto& store = OVKFApiManager::shared();
  store.guestId = request.deviceId;
  store.videoSize = request.fileSize.value_or(OVKFApiManager::defaultVideoSize);
}

std::string explanation(CameraFailure failure) {
  switch (failure) {
    case CameraFailure::noCamera:
      return tr("没有找到摄像头");
    case CameraFailure::busy:
      return tr("摄像头正被其他应用使用");
    case CameraFailure::accessDenied:
      return tr("没有使用摄像头的权限");
    case CameraFailure::failed:
      break;
  }
  return tr("摄像头无法使用,请稍后重试");
}

}  // namespace

ChatManager::ChatManager() : instanceURL(OVKFApiManager::shared().instanceURL) {}

ChatManager& ChatManager::shared() {
  return ProcessState::current().get<ChatManager>();
}

void ChatManager::openCamera(const PostMessageModel& request, ViewController& screen, AttachmentAnswer answer) {
  storeMediaRequest(request);
  const CameraOptions options{.allowTakePhoto = true,
                              .allowRecordVideo = true,
                              .minRecordDuration = 1,
                              .maxRecordDuration = 10,
                              .captureSize = {1280, 720},
                              .videoExportType = VideoExportType::mp4,
                              .applicationName = OVKFApiHelper::appDisplayName()};
  const auto finish = [view = std::weak_ptr(screen.view()), answer = std::move(answer)](const CameraOutcome& outcome) {
    if (const auto* failure = std::get_if<CameraFailure>(&outcome)) {
      showAttachmentMessage(view, explanation(*failure));
    } else if (const auto* capture = std::get_if<PickedMedia>(&outcome)) {
      sendAttachments({pickedMedia(*capture, usualQuality, true)}, view, answer);
    } else {
      log::debugPrint("Camera was cancelled");
    }
  };
  Platform::current().camera.present(options, *screen.view(), finish);
}

void ChatManager::openPhotoLibrary(const PostMessageModel& request, ViewController& screen, AttachmentAnswer answer) {
  storeMediaRequest(request);
  const auto& store = OVKFApiManager::shared();
  const PhotoLibraryOptions options{.allowSelectImage = true,
                                    .allowSelectVideo = true,
                                    .allowMixSelect = false,
                                    .allowTakePhotoInLibrary = false,
                                    .maxSelectCount = mostAtOnce,
                                    .maxVideoSize = store.videoSize,
                                    .videoTooLarge = videoTooLargeText(store.fileSize)};
  const auto send = [view = std::weak_ptr(screen.view()), answer = std::move(answer)](const PhotoSelection& selection) {
    std::vector<std::shared_ptr<Attachment>> attachments;
    for (const auto& item : selection.items) {
      attachments.push_back(pickedMedia(item, selection.isOriginal ? originalQuality : usualQuality));
    }
    sendAttachments(std::move(attachments), view, answer);
  };
  Platform::current().photoLibrary.show(options, *screen.view(), send);
}

void ChatManager::openDocumentPicker(const PostMessageModel& request, ViewController& screen, AttachmentAnswer answer) {
  auto& store = OVKFApiManager::shared();
  store.guestId = request.deviceId;
  store.fileSize = request.fileSize.value_or(OVKFApiManager::defaultFileSize);
  const auto send = [view = std::weak_ptr(screen.view()),
                     answer = std::move(answer)](const DocumentPickerOutcome& outcome) {
    const auto* const picked = std::get_if<PickedDocuments>(&outcome);
    if (!picked) {
      log::debugPrint("Document picker was cancelled");
    } else if (!picked->files.empty()) {
      sendAttachments({pickedDocument(picked->files.front())}, view, answer);
    }
  };
  Platform::current().documentPicker.present({.mimeTypes = request.mimeTypes.value_or(std::vector<std::string>())},
                                             *screen.view(), send);
}

void ChatManager::attachFiles(const std::vector<std::string>& paths, ViewController& screen, AttachmentAnswer answer) {
  const auto& view = screen.view();
  if (std::ssize(paths) > mostAtOnce) {
    return showAttachmentMessage(view, trNumber("最多只能选择%1项", mostAtOnce));
  }
  std::vector<std::shared_ptr<Attachment>> attachments;
  attachments.reserve(paths.size());
  for (const auto& path : paths) attachments.push_back(pickedDocument(Url::fromFilePath(path)));
  sendAttachments(std::move(attachments), view, std::move(answer));
}

void ChatManager::openFile(const Url& file, ViewController& screen) {
  const auto& view = screen.view();
  if (Platform::current().documentInteraction.presentOptionsMenu(file, view->bounds(), *view)) return;
  showAttachmentMessage(view, tr("没有可以打开此文件的应用"));
}

}  // namespace orivex
