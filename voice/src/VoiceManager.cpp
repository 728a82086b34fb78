#include "orivex/voice/VoiceManager.h"

#include <cmath>
#include <utility>

#include "orivex/models/RandomUUID.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/ports/FileManager.h"

namespace orivex {
namespace {

// Seconds; the duration of a clip is counted in these steps.
constexpr double tickInterval = 1.0;

// The level below which the overlay shows nothing, in dBFS, and its amplitude.
constexpr float floorPower = -80.0F;
constexpr float floorAmplitude = 0.0001F;
// Stretches what remains above the floor to the whole range: 1 / (1 - floorAmplitude), in five digits.
constexpr float stretch = 1.0001F;

// Names and values are those of the platform on which the chat server's clients began.
const AudioSettings& recorderSettings() {
  constexpr std::uint32_t linearPcm = 0x6C70636D;  // 'lpcm'
  constexpr std::int64_t lowestQuality = 0;
  static const AudioSettings settings{
      {"AVSampleRateKey", std::int64_t{16000}},     {"AVFormatIDKey", linearPcm},
      {"AVLinearPCMBitDepthKey", std::int64_t{16}}, {"AVNumberOfChannelsKey", std::int64_t{1}},
      {"AVEncoderAudioQualityKey", lowestQuality},
  };
  return settings;
}

void logIf(const char* what, const std::optional<Failure>& failure) {
  if (failure) log::warning(what + failure->description);
}

}  // namespace

VoiceManager& VoiceManager::shared() {
  return ProcessState::current().get<VoiceManager>();
}

void VoiceManager::startRecording() {
  if (!isRecordingAllowed) return;
  timer.reset();  // of a clip that was never stopped: it must not count for this one
  duration = 0;
  const auto& platform = Platform::current();
  auto& session = platform.audioSession;
  logIf("设置类型失败:", session.setCategory(AudioSessionCategory::playAndRecord));
  logIf("初始化动作失败:", session.setActive(true));
  recorder_file_path = makeRecordingFileURL();
  auto made = session.makeRecorder(*recorder_file_path, recorderSettings());
  if (const auto* failure = std::get_if<Failure>(&made)) {
    log::warning("录音失败:" + failure->description);
    return;
  }
  recorder = std::get<std::unique_ptr<AudioRecorder>>(std::move(made));
  recorder->setMeteringEnabled(true);
  recorder->prepareToRecord();
  recorder->record();
  timer = platform.mainQueue.repeat(tickInterval, [this, counted = 0.0]() mutable {
    // A second in which a dead recorder or a microphone that gives nothing has added no sound must not count.
    const double recorded = recorder && recorder->isRecording() ? recorder->recordedSeconds() : 0;
    if (recorded > counted) recordingTime();
    counted = recorded;
  });
}

void VoiceManager::stopRecording() {
  timer.reset();
  if (!recorder) {
    log::print("没有初始化");
    return;
  }
  if (!recorder->isRecording()) {
    log::print("执行结束录音，无录音文件");
  } else if (recorder_file_path) {
    log::print("执行结束录音，文件保存路径：" + recorder_file_path->absoluteString());
  }
  recorder->stop();
  recorder.reset();
}

float VoiceManager::currentVolumeLevel() {
  if (!recorder || !recorder->isRecording()) return 0;
  recorder->updateMeters();
  const float power = recorder->peakPower(0);
  if (power < floorPower) return 0;
  if (power >= 0.0F) return 1;
  const float amplitude = std::pow(10.0F, 0.05F * power);
  return std::pow((amplitude - floorAmplitude) * stretch, 0.5F);
}

Url VoiceManager::makeRecordingFileURL() {
  const auto folder = Platform::current().fileManager.documentDirectory();
  const auto path = folder ? folder->filePath() : std::nullopt;
  if (!path) fatalError("OrivexSDK/VoiceManager", "this device has no documents folder.");
  return Url::fromFilePath(*path + "/" + randomUUID() + ".wav");
}

void VoiceManager::deleteRecordingFile() {
  if (!recorder_file_path) return;
  logIf("删除录音:", Platform::current().fileManager.removeItem(*recorder_file_path));
}

void VoiceManager::setRecordingAllowed(bool allowed, Once<void(bool)> continuation) {
  auto store = alive_.guard([this, allowed] { isRecordingAllowed = allowed; });
  Platform::current().mainQueue.async(
      [store = std::move(store), allowed, continuation = std::move(continuation)]() mutable {
        store();
        std::move(continuation)(allowed);
      });
}

bool VoiceManager::play(const Url& file) {
  auto made = Platform::current().audioSession.makePlayer(file);
  if (const auto* failure = std::get_if<Failure>(&made)) {
    log::warning("播放失败:" + failure->description);
    return false;
  }
  player = std::get<std::unique_ptr<AudioPlayer>>(std::move(made));
  return player->play();
}

}  // namespace orivex
