#pragma once

#include <functional>
#include <memory>

#include "../video/FrameFeed.h"
#include "../video/Pipeline.h"
#include "../video/PipelineThreads.h"
#include "CameraSource.h"
#include "FrameTap.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// A camera that is open: its live picture for the screen, and its full frames. It closes with this object. Main
/// thread.
class CameraPipeline {
 public:
  struct Handlers {
    FrameFeed::Show show;  ///< the live picture's next frame, upright, and mirrored when the visitor sees himself
    std::function<void(CameraFailure)> failed;  ///< once; it may destroy this object
  };

  /// `captureSize` is what to ask of the camera, and `screenArea` where its live picture is shown, both in pixels.
  CameraPipeline(PipelineThreads threads, const CameraSource& source, Size captureSize, Size screenArea,
                 Handlers handlers);
  CameraPipeline(const CameraPipeline&) = delete;
  CameraPipeline& operator=(const CameraPipeline&) = delete;
  ~CameraPipeline();

  /// Turns live picture and full frames clockwise by 0, 90, 180 or 270 degrees.
  void turn(int degrees);

  /// Outlives the camera; then it keeps the last frame.
  const std::shared_ptr<FrameTap>& frames() const { return frames_; }

 private:
  void fail(CameraFailure failure, const std::string& reason);

  const std::shared_ptr<FrameTap> frames_ = std::make_shared<FrameTap>();
  std::function<void(CameraFailure)> failed_;
  bool shows_ = false;
  std::shared_ptr<FrameFeed> feed_;
  std::unique_ptr<Pipeline> pipeline_;
  Alive alive_;
};

}  // namespace orivex::gtk
