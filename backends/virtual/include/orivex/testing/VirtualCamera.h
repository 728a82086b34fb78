#pragma once

#include <optional>

#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// A camera screen that a test answers.
class VirtualCamera final : public Camera {
 public:
  explicit VirtualCamera(MainQueue& queue) : queue_(queue) {}

  void present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) override;

  /// Of the open camera screen; nothing when none is open.
  const std::optional<CameraOptions>& presented() const { return presented_; }

  /// Closes the screen and calls back from the queue.
  void finish(CameraOutcome outcome);

 private:
  MainQueue& queue_;
  std::optional<CameraOptions> presented_;
  Once<void(CameraOutcome)> completion_;
  Subscription leaves_;
};

}  // namespace orivex::testing
