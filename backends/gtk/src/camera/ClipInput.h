#pragma once

#include <functional>
#include <utility>

#include "../glib/GRef.h"
#include "../video/GstPointers.h"

namespace orivex::gtk {

/// Puts the camera's frames into a recording, from the first that comes to the last that still fits.
class ClipInput {
 public:
  /// `source` is the recording's appsrc, `base` the time at which the recording's clock stood at 0, `longest` the
  /// clip's greatest length. `began` is called with the first frame, on the camera's thread.
  ClipInput(GRef<GstElement> source, GstClockTime base, GstClockTime longest, std::function<void()> began)
      : source_(std::move(source)), base_(base), longest_(longest), began_(std::move(began)) {}

  /// A frame and when it was taken. Frames that the encoder has no time for are dropped.
  void push(GstSample& frame, GstClockTime time);

 private:
  const GRef<GstElement> source_;
  const GstClockTime base_;
  const GstClockTime longest_;
  const std::function<void()> began_;
  GstClockTime first_ = GST_CLOCK_TIME_NONE;
};

}  // namespace orivex::gtk
