#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "../WorkerPool.h"
#include "PipelineRun.h"

#include "orivex/platform/ports/Audio.h"

namespace orivex::gtk {

/// Plays a file of any kind that GStreamer knows. What goes wrong is one log line and ends the playing.
class GstAudioPlayer final : public AudioPlayer {
 public:
  GstAudioPlayer(WorkerPool& workers, std::string address) : workers_(workers), address_(std::move(address)) {}
  ~GstAudioPlayer() override { stop(); }

  bool play() override;
  bool isPlaying() const override { return playing_ && *playing_; }
  void stop() override;

 private:
  WorkerPool& workers_;
  const std::string address_;
  std::shared_ptr<std::atomic<bool>> playing_;
  std::shared_ptr<PipelineRun> run_;
};

}  // namespace orivex::gtk
