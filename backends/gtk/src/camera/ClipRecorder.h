#pragma once

#include <functional>
#include <memory>

#include "../av/Pipeline.h"
#include "CameraPipeline.h"
#include "CaptureFile.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// Writes a video, with the microphone's sound if that is wanted and there is one, from its making to `finish`.
/// Destroyed earlier it leaves no file. Main thread.
class ClipRecorder {
 public:
  /// One call of `finished` or `failed` is the last; either may destroy this object.
  struct Handlers {
    std::function<void()> began;                                 ///< the first frame is in
    std::function<void(std::shared_ptr<CaptureFile>)> finished;  ///< the file is complete
    std::function<void()> failed;                                ///< why is in the log
  };

  ClipRecorder(PipelineThreads threads, std::shared_ptr<FrameTap> frames, const CameraOptions& options, bool withSound,
               Handlers handlers);
  ClipRecorder(const ClipRecorder&) = delete;
  ClipRecorder& operator=(const ClipRecorder&) = delete;
  ~ClipRecorder();

  /// Loads what a recording will need, so that the first one begins at once.
  static void warmUp(PipelineThreads threads, VideoExportType type);

  /// Takes no further frame and completes the file.
  void finish();

 private:
  void start(bool withSound);
  void connectFrames();
  void ended();
  void pipelineFailed(const PipelineError& error);
  void fail(const std::string& reason);

  const PipelineThreads threads_;
  const std::shared_ptr<FrameTap> frames_;
  const VideoExportType type_;
  const double longest_;  // seconds
  Handlers handlers_;
  std::shared_ptr<CaptureFile> file_;
  std::unique_ptr<Pipeline> pipeline_;
  bool withSound_ = true;
  bool finishing_ = false;
  Alive alive_;
};

}  // namespace orivex::gtk
