#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../av/ClipPlayer.h"
#include "../ui/Sheet.h"
#include "../ui/windows/HostWindow.h"
#include "CameraPipeline.h"
#include "CameraPortal.h"
#include "CameraView.h"
#include "CaptureFile.h"
#include "ClipRecorder.h"
#include "DeviceOrientation.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::gtk {

/// One visit to the camera: from the search for a camera to a capture that the visitor uses, or to nothing. Main
/// thread.
class CameraScreen {
 public:
  /// Nothing, when the window went away first.
  using Result = std::optional<CameraOutcome>;

  /// Whether a video may have sound. Nothing: the visitor is being asked now, and holds the shutter again afterwards.
  using MayRecordSound = std::function<std::optional<bool>()>;

  /// Opens over a host's window. `done` is called from the queue, and may destroy the screen.
  CameraScreen(PipelineThreads threads, const HostWindow& window, const CameraOptions& options,
               MayRecordSound mayRecordSound, Once<void(Result)> done);
  CameraScreen(const CameraScreen&) = delete;
  CameraScreen& operator=(const CameraScreen&) = delete;
  ~CameraScreen() = default;

  /// The application is out of sight: closes the camera until `resume`. A recording ends as by the visitor's hand.
  void pause();
  void resume();

 private:
  enum class Phase {
    opening,  ///< no picture yet
    live,     ///< a picture, and nothing else
    recording,
    working,  ///< the capture is being written
    reviewing,
    done,
  };

  CameraView::Handlers viewHandlers();
  void finish(Result result);
  void closed();

  void findSources();
  void askPortal();
  void openCamera();
  void frameShown(const GRef<GdkTexture>& frame);
  void switchCamera();
  void turn();
  Size screenArea() const;

  void takePhoto();
  void beginVideo();
  void videoBegan();
  void tickRecording();
  void endVideo();
  void dropVideo(const std::string& notice);
  double recordedSeconds() const;

  void captured(std::shared_ptr<CaptureFile> capture);
  void review();
  void retake();
  void useCapture();

  const PipelineThreads threads_;
  const CameraOptions options_;
  const MayRecordSound mayRecordSound_;
  Once<void(Result)> done_;
  Result result_;
  Phase phase_ = Phase::opening;
  bool paused_ = false;
  std::vector<CameraSource> sources_;
  std::size_t current_ = 0;
  CameraView view_;
  Sheet sheet_;
  std::unique_ptr<DeviceOrientation> orientation_;
  std::unique_ptr<CameraPipeline> camera_;
  std::unique_ptr<CameraPortal> portal_;
  std::unique_ptr<ClipRecorder> recorder_;
  std::unique_ptr<Timer> recordingTicks_;  // from the recording's first frame on
  double recordingBegan_ = 0;
  std::shared_ptr<CaptureFile> capture_;
  std::unique_ptr<ClipPlayer> player_;
  Alive alive_;
};

}  // namespace orivex::gtk
