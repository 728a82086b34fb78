#include "GstAudioSession.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include <unistd.h>

#include "GstAudioRecorder.h"
#include "Pipeline.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Recordings and players come and go in any order, and each of their steps may wait for a sound server that hangs.
constexpr std::size_t mostThreads = 4;
constexpr std::chrono::seconds longestIdleness{5};

template <class Integer>
std::optional<Integer> numberOf(const AudioSettings& settings, std::string_view key) {
  const auto found = settings.find(key);
  if (found == settings.end()) return std::nullopt;
  const auto* const number = std::get_if<Integer>(&found->second);
  return number ? std::optional(*number) : std::nullopt;
}

std::optional<PcmFormat> formatOf(const AudioSettings& settings) {
  constexpr std::uint32_t linearPcm = 0x6C70636D;  // 'lpcm'
  const auto rate = numberOf<std::int64_t>(settings, "AVSampleRateKey").value_or(0);
  const auto channels = numberOf<std::int64_t>(settings, "AVNumberOfChannelsKey").value_or(0);
  if (numberOf<std::uint32_t>(settings, "AVFormatIDKey") != linearPcm) return std::nullopt;
  if (numberOf<std::int64_t>(settings, "AVLinearPCMBitDepthKey") != 16) return std::nullopt;
  if (rate < 8000 || rate > 96000 || channels < 1 || channels > 2) return std::nullopt;
  return PcmFormat{.rate = static_cast<int>(rate), .channels = static_cast<int>(channels)};
}

/// Plays a file of any kind that GStreamer knows. What goes wrong is one log line and ends the playing.
class GstAudioPlayer final : public AudioPlayer {
 public:
  GstAudioPlayer(PipelineThreads threads, std::string address) : threads_(threads), address_(std::move(address)) {}

  bool play() override {
    pipeline_ = std::make_unique<Pipeline>(
        threads_, [address = address_] { return build(address); },
        Pipeline::Handlers{.ended = [this] { stop(); },
                           .failed =
                               [this](const PipelineError& error) {
                                 log::warning("Playing ended: " + error.text);
                                 stop();
                               },
                           .needsDevice = true});
    return true;
  }
  bool isPlaying() const override { return pipeline_ != nullptr; }
  void stop() override { pipeline_.reset(); }

 private:
  static ElementOrError build(const std::string& address) {
    auto player = GRef<GstElement>::sink(gst_element_factory_make("playbin", nullptr));
    if (!player) return pipelineError("GStreamer has no playbin");
    // Of a file that holds a film as well only the sound is played.
    g_object_set(player.get(), "uri", address.c_str(), "video-sink", gst_element_factory_make("fakesink", nullptr),
                 nullptr);
    return player;
  }

  const PipelineThreads threads_;
  const std::string address_;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace

GstAudioSession::GstAudioSession(MainQueue& main) : workers_(mostThreads, longestIdleness), threads_{main, workers_} {}

std::optional<Failure> GstAudioSession::setCategory(AudioSessionCategory /*category*/) {
  return std::nullopt;
}

std::optional<Failure> GstAudioSession::setActive(bool active) {
  if (active) workers_.run([] { prepareGStreamer(); });
  return std::nullopt;
}

std::variant<std::unique_ptr<AudioRecorder>, Failure> GstAudioSession::makeRecorder(const Url& file,
                                                                                    const AudioSettings& settings) {
  const auto path = file.filePath();
  if (!path) return Failure{"not a place for a file: " + file.absoluteString()};
  const auto format = formatOf(settings);
  if (!format) return Failure{"settings that this device does not record with"};
  if (::access(std::filesystem::path(*path).parent_path().c_str(), W_OK | X_OK) != 0) {
    return Failure{std::strerror(errno)};
  }
  return std::make_unique<GstAudioRecorder>(threads_, *path, *format);
}

std::variant<std::unique_ptr<AudioPlayer>, Failure> GstAudioSession::makePlayer(const Url& file) {
  if (!file.filePath()) return Failure{"not a file: " + file.absoluteString()};
  return std::make_unique<GstAudioPlayer>(threads_, file.absoluteString());
}

}  // namespace orivex::gtk
