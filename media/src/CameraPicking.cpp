#include "CameraPicking.h"

#include <memory>
#include <string>
#include <utility>

#include "Attachments.h"
#include "MediaDescriptions.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex {
namespace {

// A photo from the camera is sent like one of the library.
constexpr double photoQuality = 0.7;

CameraOptions options() {
  return {.allowTakePhoto = true,
          .allowRecordVideo = true,
          .minRecordDuration = 1,
          .maxRecordDuration = 10,
          .captureSize = {1280, 720},
          .videoExportType = VideoExportType::mp4,
          .applicationName = OVKFApiHelper::appDisplayName()};
}

std::string explanation(CameraFailure failure) {
  switch (failure) {
    case CameraFailure::noCamera:
      return "没有找到摄像头";
    case CameraFailure::busy:
      return "摄像头正被其他应用使用";
    case CameraFailure::accessDenied:
      return "没有使用摄像头的权限";
    case CameraFailure::failed:
      break;
  }
  return "摄像头无法使用,请稍后重试";
}

/// A captured file, for as long as somebody may send it.
class Capture {
 public:
  explicit Capture(Url file) : file_(std::move(file)) {}
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;
  ~Capture() {
    if (const auto failure = Platform::current().fileManager.removeItem(file_)) {
      log::debugPrint("The captured file stays: " + failure->description);
    }
  }

 private:
  Url file_;
};

void describeCapture(const PickedMedia& capture, std::weak_ptr<ViewController> screen,
                     ChatManager::PickedFiles completion) {
  describeMedia({capture}, photoQuality, std::move(screen),
                [kept = std::make_shared<Capture>(capture.file), completion = std::move(completion)](auto described) {
                  if (!described.empty()) completion(std::move(described));
                });
}

}  // namespace

void takeWithCamera(const PostMessageModel& /*request*/, ViewController& screen, ChatManager::PickedFiles completion) {
  Platform::current().camera.present(
      options(), *screen.view(),
      [screen = screen.weak_from_this(), completion = std::move(completion)](const CameraOutcome& outcome) mutable {
        if (const auto* failure = std::get_if<CameraFailure>(&outcome)) {
          tellAboutAttachment(screen, explanation(*failure));
        } else if (const auto* capture = std::get_if<PickedMedia>(&outcome)) {
          describeCapture(*capture, screen, std::move(completion));
        } else {
          log::debugPrint("Camera was cancelled");
        }
      });
}

}  // namespace orivex
