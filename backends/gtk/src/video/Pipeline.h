#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "video/Elements.h"
#include "video/PipelineThreads.h"

#include "orivex/platform/base/Alive.h"

namespace orivex::gtk {

/// A GStreamer pipeline that plays as long as this object lives. Whatever may block, from loading plug-ins to letting
/// go of the device, runs on the worker; where that has one thread, in the order of the calls here. Main thread.
class Pipeline {
 public:
  struct Handlers {
    std::function<void()> ended;                       ///< every sink has seen the end of the stream
    std::function<void(const PipelineError&)> failed;  ///< once; nothing comes after it
    bool needsDevice =
        false;  ///< fails where an element would go on with a silent device in the place of a missing one
  };

  /// Makes the pipeline, on the worker, with GStreamer ready for use.
  using Build = std::function<ElementOrError()>;

  /// Plays what `build` makes. The handlers are called on the main thread, never inside a call and never after the
  /// destruction; `failed` may destroy this object. `belongings` are let go of after the pipeline has stopped.
  Pipeline(PipelineThreads threads, Build build, Handlers handlers, std::shared_ptr<void> belongings = nullptr);
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;
  ~Pipeline();

  /// Runs `work` on the worker once the pipeline plays; never, when it could not be made.
  void run(std::function<void(GstElement&)> work);

 private:
  struct Core;
  class BusListener;

  void fail(const PipelineError& error);

  PipelineThreads threads_;
  Handlers handlers_;
  std::shared_ptr<Core> core_;
  bool failed_ = false;
  Alive alive_;
};

/// Loads GStreamer, and bounds what the process keeps of frames. Any thread; the first call may take long.
void prepareGStreamer();

}  // namespace orivex::gtk
