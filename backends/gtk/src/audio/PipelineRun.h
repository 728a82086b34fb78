#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

#include <gst/gst.h>

#include "../WorkerPool.h"
#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// A GStreamer pipeline on a worker thread, from its making to its end: each of its steps may wait for a sound server.
class PipelineRun {
 public:
  using Made = std::variant<GRef<GstElement>, Failure>;

  /// Runs what `make` makes until `stop`, its end or a failure. Both functions are called on the worker thread; `ended`
  /// gets the failure, if there was one, and is not called after `stop`.
  static std::shared_ptr<PipelineRun> start(WorkerPool& workers, std::function<Made()> make,
                                            Once<void(std::optional<Failure>)> ended);

  /// Ends the run soon, without waiting for it. Any thread.
  void stop();

 private:
  PipelineRun() = default;

  void run(const std::function<Made()>& make, Once<void(std::optional<Failure>)> ended);
  void play(GstElement* pipeline);
  void finish(std::optional<Failure> failure);
  static GstBusSyncReply received(GstBus* bus, GstMessage* message, gpointer self) noexcept;

  std::mutex mutex_;
  std::condition_variable changed_;
  bool stopped_ = false;
  bool finished_ = false;
  std::optional<Failure> failure_;
};

/// Makes a pipeline of a description as gst-launch takes it.
PipelineRun::Made parsePipeline(const std::string& description);

}  // namespace orivex::gtk
