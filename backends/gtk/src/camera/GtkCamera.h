#pragma once

#include <memory>

#include "../WorkerPool.h"
#include "CameraScreen.h"

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

class GtkApplicationPort;
class GtkRecordPermission;

/// The camera as GStreamer reaches it, on a screen over the whole window that asks. The camera is open only while its
/// live picture shows and the application is active.
class GtkCamera final : public Camera {
 public:
  GtkCamera(MainQueue& mainQueue, GtkApplicationPort& application, GtkRecordPermission& permission);

  /// Captured files lie in a folder of the user's runtime folder, readable for this user only. A view in no
  /// window is one log line.
  void present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) override;

 private:
  void done(CameraScreen::Result result);
  void close();

  MainQueue& mainQueue_;
  GtkApplicationPort& application_;
  GtkRecordPermission& permission_;
  WorkerPool worker_;
  Once<void(CameraOutcome)> completion_;
  std::unique_ptr<CameraScreen> screen_;
  Subscription resigns_;
  Subscription becomesActive_;
  Subscription leaves_;
};

}  // namespace orivex::gtk
