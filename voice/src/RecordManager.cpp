#include "orivex/voice/RecordManager.h"

#include <utility>

#include "orivex/media/Attachment.h"
#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/voice/VoiceManager.h"

namespace orivex {
namespace {

// Seconds.
constexpr double levelInterval = 0.1;
constexpr double tooShortDuration = 1.0;

// In the unit of `VoiceManager::duration`, whose first step is 1000: a clip without a whole second is too short.
constexpr double longestTooShort = 1.0;

// Seconds after which every working microphone has delivered samples.
constexpr double firstSoundTime = 1.0;

constexpr double millisecondsPerSecond = 1000.0;

// The last component of an address' path, decoded.
std::string lastPathComponent(const std::string& address) {
  const auto path = address.substr(0, address.find_first_of("?#"));
  const auto name = path.substr(path.rfind('/') + 1);
  const auto decoded = Url::parse("file:///" + name);
  return decoded ? decoded->filePath().value_or("/" + name).substr(1) : name;
}

// Who cannot see the overlay is told of its ends.
void announce(const char* text) {
  Platform::current().progressOverlay.announce(text);
}

class Clip final : public Attachment {
 public:
  Clip(Url file, double seconds) : file_(std::move(file)) {
    const auto path = file_.filePath().value_or("");
    description.type = rawValue(FileType::Record);
    description.duration = seconds;
    description.suffix = "wav";
    upload =
        FilePart{UploadManager::fileField, FilePart::Path{path}, "file", UploadManager::mimeType(fileExtension(path))};
  }

  Clip(const Clip&) = delete;
  Clip& operator=(const Clip&) = delete;
  /// Sent, or nobody can send it any more.
  ~Clip() override {
    if (const auto failure = Platform::current().fileManager.removeItem(file_)) {
      log::warning("删除录音:" + failure->description);
    }
  }

  bool isInspected() const override { return true; }

  void uploaded(const UploadResposeModel* stored) override {
    if (!stored) return;
    log::print("Upload Success");
    description.name = lastPathComponent(stored->url);
    description.url = stored->url;
  }

 private:
  const Url file_;
};

}  // namespace

RecordManager& RecordManager::shared() {
  return ProcessState::current().get<RecordManager>();
}

const std::shared_ptr<RecordingView>& RecordManager::recordingView() {
  if (!view_) view_ = RecordingView::make();
  return view_;
}

void RecordManager::perform(const std::string& action, RecordedClip completion) {
  if (action == "start") {
    requestMicrophoneAndStart();
  } else if (action == "end") {
    finishRecording(std::move(completion));
  } else if (action == "cancel") {
    cancelRecording();
  } else if (action == "hold") {
    setFingerAway(true);
  } else if (action == "recover") {
    setFingerAway(false);
  } else {
    log::print("dropped: recording knows no action " + action);
  }
}

void RecordManager::requestMicrophoneAndStart() {
  if (overlayTimer_) cancelRecording();
  auto& voice = VoiceManager::shared();
  // What was allowed for an earlier press does not count for this one.
  voice.isRecordingAllowed = isAllowed_ = false;
  voice.isStop = false;
  isFingerAway_ = false;
  const auto answer = [this, question = ++lastQuestion_](bool granted) {
    VoiceManager::shared().setRecordingAllowed(granted,
                                               [this, question](bool allowed) { answered(question, allowed); });
  };
  Platform::current().recordPermission.request(OVKFApiHelper::appDisplayName(), *recordingView(), answer);
}

void RecordManager::answered(std::uint64_t question, bool allowed) {
  log::print(allowed ? "Microphone permission granted" : "Microphone permission denied");
  auto& voice = VoiceManager::shared();
  if (question != lastQuestion_) {  // a later press has an answer of its own, or waits for it
    voice.isRecordingAllowed = isAllowed_;
    return;
  }
  isAllowed_ = allowed;
  if (!allowed) {
    showAttachmentMessage(recordingView(),
                          tr("无法录制声音，前往\"设置 > %1\"中打开麦克风权限", {OVKFApiHelper::appDisplayName()}));
    dropClip();
  } else if (!voice.isStop) {
    voice.startRecording();
    beginOverlay();
    if (isFingerAway_) setFingerAway(true);
  }
}

void RecordManager::beginOverlay() {
  ++overlayShowings_;
  const auto& view = recordingView();
  view->setRecordingState(RecordingState::volumn);
  view->setVolume(0);
  view->setSeconds(0);
  view->setHidden(false);
  auto& queue = Platform::current().mainQueue;
  overlayBegan_ = queue.now();
  overlayTimer_ = queue.repeat(levelInterval, [this] { setVoiceSoundSize(); });
  announce(tr("正在录音"));
}

void RecordManager::setVoiceSoundSize() {
  auto& voice = VoiceManager::shared();
  recordingView()->setVolume(voice.currentVolumeLevel());
  recordingView()->setSeconds(static_cast<int>(voice.duration / millisecondsPerSecond));
}

void RecordManager::setFingerAway(bool away) {
  isFingerAway_ = away;
  if (!overlayTimer_) return;
  recordingView()->setRecordingState(away ? RecordingState::cancel : RecordingState::volumn);
  setVoiceSoundSize();  // the new level bar is at its full height
}

void RecordManager::endOverlay() {
  overlayTimer_.reset();
  recordingView()->setHidden(true);
}

void RecordManager::cancelRecording() {
  auto& voice = VoiceManager::shared();
  if (!voice.isRecordingAllowed) {
    voice.isStop = true;
    return;
  }
  if (overlayTimer_) announce(tr("已取消录音"));
  endOverlay();
  dropClip();
}

// Forgets the file, too: the next press must neither delete nor send it.
void RecordManager::dropClip() {
  auto& voice = VoiceManager::shared();
  voice.deleteRecordingFile();
  voice.recorder_file_path.reset();
  if (voice.recorder) voice.recorder->discard();
}

void RecordManager::finishRecording(RecordedClip completion) {
  auto& voice = VoiceManager::shared();
  if (!voice.isRecordingAllowed) {
    voice.isStop = true;
    return;
  }
  const auto fault = clipFault();
  overlayTimer_.reset();
  const double duration = voice.duration;
  if (fault) {
    endOverlay();
    if (voice.recorder) voice.stopRecording();
    dropClip();
    return showAttachmentMessage(recordingView(), *fault);
  }
  if (duration <= longestTooShort) return showTooShort();
  endOverlay();
  voice.stopRecording();
  const auto clip = std::exchange(voice.recorder_file_path, std::nullopt);
  if (!clip) return;
  announce(tr("录音结束"));
  const auto& address = clip->absoluteString();
  if (const auto file = Url::parse(address)) {
    send(*file, duration / millisecondsPerSecond, std::move(completion));
  } else {
    showAttachmentMessage(recordingView(), tr("无效的路径:%1", {address}));
  }
}

// Why the clip must not be sent, for the visitor: it has no sound, or is cut off.
std::optional<std::string> RecordManager::clipFault() const {
  if (!overlayTimer_) return std::nullopt;
  const auto& voice = VoiceManager::shared();
  const auto* const recorder = voice.timer ? voice.recorder.get() : nullptr;  // of this press
  const bool heard = recorder && recorder->recordedSeconds() > 0;
  if (recorder && recorder->isDiskFull()) {
    return heard ? tr("存储空间不足,录音不完整,没有发送") : tr("存储空间不足,无法录音");
  }
  const bool hadTime = Platform::current().mainQueue.now() - overlayBegan_ >= firstSoundTime;
  return heard || !hadTime ? std::nullopt : std::optional<std::string>(tr("没有找到麦克风"));
}

void RecordManager::showTooShort() {
  recordingView()->setRecordingState(RecordingState::timeTooShort);
  dropClip();
  Platform::current().mainQueue.asyncAfter(tooShortDuration, [this, showing = overlayShowings_] {
    if (showing == overlayShowings_) recordingView()->setHidden(true);
  });
}

void RecordManager::send(const Url& file, double seconds, RecordedClip completion) {
  // The screen of this press: the overlay may go over to another one.
  auto* const screen = recordingView()->superview();
  sendAttachments({std::make_shared<Clip>(file, seconds)}, screen ? screen->weak_from_this() : std::weak_ptr<View>(),
                  [completion = std::move(completion)](auto clips) { completion(std::move(clips.front())); });
}

void RecordManager::closeMicrophone() {
  cancelRecording();
  if (VoiceManager::shared().recorder) VoiceManager::shared().stopRecording();
}

void RecordManager::closeMicrophoneOf(const View& screen) {
  if (screen.hasSubview(*recordingView())) closeMicrophone();
}

}  // namespace orivex
