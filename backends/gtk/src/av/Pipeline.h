#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include <gst/gst.h>

#include "../WorkerPool.h"
#include "../glib/GRef.h"
#include "Samples.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Where the code of cameras and players runs: widgets on the main thread, and whatever may block, one thing after the
/// other, on one worker. The main queue outlives the worker.
struct PipelineThreads {
  MainQueue& main;
  WorkerPool& worker;

  /// Runs `work` on the worker and then, on the main thread, `done` with its result.
  template <class Work, class Done>
  void run(Work work, Done done) const {
    worker.run([&queue = main, work = std::move(work), done = std::move(done)]() mutable {
      queue.async([result = work(), done = std::move(done)]() mutable { done(std::move(result)); });
    });
  }
};

/// What GStreamer said when something went wrong.
struct PipelineError {
  GQuark domain = 0;
  int code = 0;
  std::string text;    ///< for the log
  std::string origin;  ///< path of the element that said so, such as "/GstPipeline:a/GstBin:b/GstX:c"; may be empty
};

/// An element, or why there is none.
using ElementOrError = std::variant<GRef<GstElement>, PipelineError>;

/// Takes over `error`, which may be null.
PipelineError adoptError(GError* error, std::string origin = {});

/// An error in our own words.
PipelineError pipelineError(std::string text);

/// A pipeline that is described as gst-launch takes it.
ElementOrError parsePipeline(const std::string& description);

/// The same as one element with the pads that are left open.
ElementOrError parseBin(const std::string& description);

/// A source of one or several elements, whose description may end with the format of its data.
ElementOrError makeSourceBin(const std::string& description);

/// The element called `name` inside `bin`; null without one.
GRef<GstElement> elementIn(GstElement& bin, const char* name);

/// Hands every sample of an appsink to `handler`, on a streaming thread. The handler lives as long as the appsink.
void handleSamples(GstElement& appsink, std::function<void(SharedSample)> handler);

/// A GStreamer pipeline that plays as long as this object lives. Whatever may block, from loading plug-ins to closing
/// the device, runs on the worker; where that has one thread, in the order of the calls here. Main thread.
class Pipeline {
 public:
  struct Handlers {
    std::function<void()> ended;                       ///< every sink has seen the end of the stream
    std::function<void(const PipelineError&)> failed;  ///< once; nothing comes after it
    bool needsDevice =
        false;  ///< fails where an element would go on with a silent device in the place of a missing one
  };

  /// Makes the pipeline, on the worker, with GStreamer ready for use. What it captures lives until the pipeline has
  /// stopped.
  using Build = std::function<ElementOrError()>;

  /// Plays what `build` makes. The handlers are called on the main thread, never inside a call and never after the
  /// destruction; both may destroy this object.
  Pipeline(PipelineThreads threads, Build build, Handlers handlers);
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;
  ~Pipeline();

  /// Runs `work` on the worker once the pipeline plays; never, when it could not be made.
  void run(std::function<void(GstElement&)> work);

 private:
  struct Core;

  void reported(const std::optional<PipelineError>& error);

  PipelineThreads threads_;
  Handlers handlers_;
  std::shared_ptr<Core> core_;
  Alive alive_;
};

/// Loads GStreamer, and bounds what the process keeps of frames. Any thread; the first call may take long.
void prepareGStreamer();

}  // namespace orivex::gtk
