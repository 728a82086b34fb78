#include "orivex/testing/VirtualAudioSession.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "orivex/platform/ui/View.h"
#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {
namespace {

// What a meter tells of silence.
constexpr float silence = -160;

constexpr const char* numbers[] = {"AVSampleRateKey", "AVLinearPCMBitDepthKey", "AVNumberOfChannelsKey"};

std::optional<Failure> failureIf(const std::string& reason) {
  return reason.empty() ? std::nullopt : std::optional(Failure{reason});
}

// Uncompressed samples, described in full.
bool isLinearPcm(const AudioSettings& settings) {
  const auto format = settings.find("AVFormatIDKey");
  if (format == settings.end() || format->second != AudioSettings::mapped_type(std::uint32_t{0x6C70636D})) return false;
  return std::all_of(std::begin(numbers), std::end(numbers), [&](const char* key) {
    const auto found = settings.find(key);
    const auto* const number = found == settings.end() ? nullptr : std::get_if<std::int64_t>(&found->second);
    return number && *number > 0;
  });
}

double secondsOf(const VirtualAudioSession::Recording& recording, double now) {
  return recording.seconds + (recording.recording && !recording.deaf ? now - recording.since : 0);
}

void end(VirtualAudioSession::Recording& recording, double now) {
  recording.seconds = secondsOf(recording, now);
  recording.recording = false;
}

class Recorder final : public AudioRecorder {
 public:
  Recorder(const MainQueue& queue, std::shared_ptr<VirtualAudioSession::Recording> state,
           std::shared_ptr<const float> heard)
      : queue_(queue), state_(std::move(state)), heard_(std::move(heard)) {}
  ~Recorder() override {
    stop();
    state_->destroyed = true;
  }

  void setMeteringEnabled(bool enabled) override { state_->metering = enabled; }
  bool prepareToRecord() override { return !state_->diskFull; }
  bool record() override {
    if (state_->diskFull) return false;
    if (!state_->recording) state_->since = queue_.now();
    return state_->recording = true;
  }
  bool isRecording() const override { return state_->recording; }
  void stop() override { end(*state_, queue_.now()); }
  void discard() override { state_->discarded = true; }
  double recordedSeconds() const override { return secondsOf(*state_, queue_.now()); }
  bool isDiskFull() const override { return state_->diskFull; }
  void updateMeters() override { level_ = state_->metering && state_->recording ? *heard_ : silence; }
  float peakPower(int channel) const override { return channel == 0 ? level_ : silence; }

 private:
  const MainQueue& queue_;
  std::shared_ptr<VirtualAudioSession::Recording> state_;
  std::shared_ptr<const float> heard_;
  float level_ = silence;
};

class Player final : public AudioPlayer {
 public:
  explicit Player(std::shared_ptr<VirtualAudioSession::Playing> state) : state_(std::move(state)) {}
  ~Player() override { state_->playing = false; }

  bool play() override { return state_->playing = true; }
  bool isPlaying() const override { return state_->playing; }
  void stop() override { state_->playing = false; }

 private:
  std::shared_ptr<VirtualAudioSession::Playing> state_;
};

}  // namespace

std::optional<Failure> VirtualAudioSession::setCategory(AudioSessionCategory category) {
  requireMainThread(queue_, "AudioSession::setCategory");
  if (categoryFailure_.empty()) category_ = category;
  return failureIf(categoryFailure_);
}

std::optional<Failure> VirtualAudioSession::setActive(bool active) {
  requireMainThread(queue_, "AudioSession::setActive");
  if (activationFailure_.empty()) active_ = active;
  return failureIf(activationFailure_);
}

std::variant<std::unique_ptr<AudioRecorder>, Failure> VirtualAudioSession::makeRecorder(const Url& file,
                                                                                        const AudioSettings& settings) {
  requireMainThread(queue_, "AudioSession::makeRecorder");
  if (const auto failure = failureIf(recorderFailure_)) return *failure;
  if (!file.filePath()) return Failure{"not a file"};
  if (!isLinearPcm(settings)) return Failure{"unsupported settings"};
  recordings_.push_back(std::make_shared<Recording>(
      Recording{.path = *file.filePath(), .settings = settings, .diskFull = diskFull_, .deaf = deaf_}));
  return std::make_unique<Recorder>(queue_, recordings_.back(), peakPower_);
}

std::variant<std::unique_ptr<AudioPlayer>, Failure> VirtualAudioSession::makePlayer(const Url& file) {
  requireMainThread(queue_, "AudioSession::makePlayer");
  if (const auto failure = failureIf(playerFailure_)) return *failure;
  if (!file.filePath()) return Failure{"not a file"};
  playings_.push_back(std::make_shared<Playing>(Playing{.path = *file.filePath()}));
  return std::make_unique<Player>(playings_.back());
}

void VirtualAudioSession::interrupt() {
  for (const auto& recording : recordings_) end(*recording, queue_.now());
}

void VirtualAudioSession::fillDisk(bool full) {
  diskFull_ = full;
  if (!full) return;
  for (const auto& recording : recordings_) recording->diskFull |= recording->recording && !recording->discarded;
  interrupt();
}

void VirtualRecordPermission::request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) {
  requireMainThread(queue_, "RecordPermission::request");
  asked_.push_back(applicationName);
  if (remembered_) {
    deliver(std::move(answer), *remembered_);
  } else {
    open_.push_back(std::move(answer));
    leaves_ = view.observeLeaving([this] { open_.clear(); });
  }
}

void VirtualRecordPermission::answer(bool granted) {
  for (auto& question : std::exchange(open_, {})) deliver(std::move(question), granted);
}

void VirtualRecordPermission::deliver(Once<void(bool)> answer, bool granted) {
  queue_.global([answer = std::move(answer), granted]() mutable { std::move(answer)(granted); });
}

}  // namespace orivex::testing
