#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include <gdk/gdk.h>

#include "../glib/GRef.h"
#include "Samples.h"

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The size at which a frame is shown in an area: it fills the area when that costs little of its edges, and else
/// shows as a whole.
Size placedSize(Size frame, Size area);

/// Carries frames from a pipeline to the main thread. Only the newest waits there: a main thread that is busy skips
/// what is in between.
class FrameFeed : public std::enable_shared_from_this<FrameFeed> {
 public:
  using Show = std::function<void(GRef<GdkTexture>)>;

  /// `show` is called on the main thread until `close`.
  FrameFeed(MainQueue& main, Show show) : main_(main), show_(std::move(show)) {}

  /// The end of a pipeline that shows its pictures, in launch syntax. `sync`: whether each picture waits for its time.
  static std::string branch(bool sync);

  /// Takes the frames of the branch inside `bin`. They are scaled on the pipeline's thread to what they take of an area
  /// of this size (pixels), so that showing them is a copy.
  void connect(GstElement& bin, Size area, bool mirrored);

  /// Main thread. Nothing is shown from here on.
  void close() { show_ = nullptr; }

 private:
  void push(SharedSample frame);
  void deliver();

  MainQueue& main_;
  Show show_;  // main thread
  std::mutex mutex_;
  SharedSample newest_;
  bool posted_ = false;
};

}  // namespace orivex::gtk
