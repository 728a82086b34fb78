#pragma once

#include <memory>
#include <string>
#include <utility>

#include "../video/Pipeline.h"

#include "orivex/platform/ports/Audio.h"

namespace orivex::gtk {

/// Plays a file of any kind that GStreamer knows. What goes wrong is one log line and ends the playing.
class GstAudioPlayer final : public AudioPlayer {
 public:
  GstAudioPlayer(PipelineThreads threads, std::string address) : threads_(threads), address_(std::move(address)) {}

  bool play() override;
  bool isPlaying() const override { return pipeline_ != nullptr; }
  void stop() override { pipeline_.reset(); }

 private:
  const PipelineThreads threads_;
  const std::string address_;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace orivex::gtk
