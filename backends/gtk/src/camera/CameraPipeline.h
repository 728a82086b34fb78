#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "../av/FrameFeed.h"
#include "../av/Pipeline.h"
#include "CameraSource.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// Where the camera's full frames can be had: the newest one for a photo, each one for a video. Any thread.
class FrameTap {
 public:
  /// Takes a frame and the time at which it was taken, on the clock of `gst_system_clock_obtain`. On a streaming
  /// thread.
  using Receiver = std::function<void(GstSample&, GstClockTime)>;

  void push(SharedSample frame, GstClockTime time) {
    const std::lock_guard lock(mutex_);
    newest_ = std::move(frame);
    if (receiver_) receiver_(*newest_, time);
  }

  /// Null before the first frame.
  SharedSample newest() const {
    const std::lock_guard lock(mutex_);
    return newest_;
  }

  /// Once this returns the receiver before is not called any more.
  void setReceiver(Receiver receiver) {
    const std::lock_guard lock(mutex_);
    receiver_ = std::move(receiver);
  }

 private:
  mutable std::mutex mutex_;
  SharedSample newest_;
  Receiver receiver_;
};

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
  ~CameraPipeline() { feed_->close(); }

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

/// What the error means to somebody who wants to use a camera that has not shown anything yet.
CameraFailure failureOf(const PipelineError& error);

}  // namespace orivex::gtk
