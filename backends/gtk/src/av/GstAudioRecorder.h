#pragma once

#include <memory>
#include <string>

#include "Pipeline.h"
#include "WavFile.h"

#include "orivex/platform/ports/Audio.h"

namespace orivex::gtk {

/// The element that records, described as gst-launch takes it: that of the sound server which runs, PulseAudio's
/// protocol first, since PipeWire speaks it too; without a server, whatever GStreamer finds. The environment variable
/// ORIVEX_AUDIO_SOURCE names another one. GStreamer must be initialised; any thread.
std::string audioSource();

/// Records the microphone through GStreamer. Samples go from the streaming thread straight to the file, so that the
/// main thread neither waits for the sound server nor holds a recording up.
class GstAudioRecorder final : public AudioRecorder {
 public:
  GstAudioRecorder(PipelineThreads threads, std::string path, const PcmFormat& format)
      : threads_(threads), path_(std::move(path)), format_(format) {}
  ~GstAudioRecorder() override { stop(); }

  void setMeteringEnabled(bool enabled) override { metering_ = enabled; }
  bool prepareToRecord() override;
  bool record() override;
  bool isRecording() const override;
  void stop() override;
  void discard() override;
  double recordedSeconds() const override;
  bool isDiskFull() const override;
  void updateMeters() override;
  float peakPower(int channel) const override;

 private:
  class Capture;

  /// The level without any sound, in dBFS.
  static constexpr float silence = -160;

  const PipelineThreads threads_;
  const std::string path_;
  const PcmFormat format_;
  bool metering_ = false;
  float power_ = silence;
  bool diskFull_ = false;  // there was no room for the header of the file
  std::shared_ptr<Capture> capture_;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace orivex::gtk
