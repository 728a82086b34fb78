#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include <gdk/gdk.h>

#include "glib/GRef.h"
#include "video/GstPointers.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Carries frames from a streaming thread to the main thread. Only the newest waits there: a main thread that is busy
/// skips what is in between.
class FrameFeed : public std::enable_shared_from_this<FrameFeed> {
 public:
  using Show = std::function<void(GRef<GdkTexture>)>;

  /// What every frame has to be: blue, green, red, alpha, a byte each.
  static constexpr const char* format = "BGRA";

  /// `show` is called on the main thread until `close`.
  FrameFeed(MainQueue& main, Show show) : main_(main), show_(std::move(show)) {}

  /// Any thread.
  void push(SharedSample frame);

  /// Main thread. Nothing is shown from here on.
  void close();

 private:
  void deliver();

  MainQueue& main_;
  Show show_;  // main thread
  std::mutex mutex_;
  SharedSample newest_;
  bool posted_ = false;
};

}  // namespace orivex::gtk
