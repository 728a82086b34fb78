#pragma once

#include <string>
#include <variant>

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex {

enum class VideoExportType { mov, mp4 };

struct CameraOptions {
  bool allowTakePhoto = true;
  bool allowRecordVideo = true;
  double minRecordDuration = 1;   ///< seconds
  double maxRecordDuration = 10;  ///< seconds
  Size captureSize{1280, 720};    ///< pixels, of the sensor held in landscape
  VideoExportType videoExportType = VideoExportType::mp4;
  std::string applicationName{};  ///< in whose name the visitor is asked for the microphone
};

/// Why the camera cannot be used.
enum class CameraFailure { noCamera, busy, accessDenied, failed };

struct CaptureCancelled {};

/// A captured file belongs to the caller, who deletes it when it was sent.
using CameraOutcome = std::variant<PickedMedia, CaptureCancelled, CameraFailure>;

/// The device's camera. The sound of its videos comes from the microphone that `AudioSession` records, by the consent
/// that `RecordPermission` asks for; without it they are silent.
class Camera : public Interface {
 public:
  /// Opens the camera screen over the window of `view`. Main thread; `completion` is called at most once, on the main
  /// thread and not inside this call: never when the window goes away or the screen of `view` leaves first, either of
  /// which closes the camera, and never for a second call while a camera screen is open.
  virtual void present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) = 0;
};

}  // namespace orivex
