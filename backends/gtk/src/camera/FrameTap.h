#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "../video/GstPointers.h"

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

}  // namespace orivex::gtk
