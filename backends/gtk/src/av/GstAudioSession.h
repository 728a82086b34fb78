#pragma once

#include "Pipeline.h"

#include "orivex/platform/ports/Audio.h"

namespace orivex::gtk {

/// The sound of the desktop. The sound server shares its devices among all applications, so neither a category nor an
/// activation can fail; the latter makes GStreamer ready.
class GstAudioSession final : public AudioSession {
 public:
  explicit GstAudioSession(MainQueue& main);

  std::optional<Failure> setCategory(AudioSessionCategory category) override;
  std::optional<Failure> setActive(bool active) override;

  /// Serves linear PCM of 16 bits, one or two channels and 8,000 to 96,000 frames a second.
  std::variant<std::unique_ptr<AudioRecorder>, Failure> makeRecorder(const Url& file,
                                                                     const AudioSettings& settings) override;
  std::variant<std::unique_ptr<AudioPlayer>, Failure> makePlayer(const Url& file) override;

 private:
  WorkerPool workers_;
  const PipelineThreads threads_;
};

}  // namespace orivex::gtk
