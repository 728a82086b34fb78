#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orivex/models/UploadFileInfoModel.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/voice/RecordingView.h"

namespace orivex {

/// The press-to-talk controller: it asks for the microphone, records with the shared `VoiceManager`, shows the overlay
/// and sends what was said. One per process, made on first use and never destroyed. Main thread.
class RecordManager {
 public:
  static RecordManager& shared();

  /// The overlay, made on first use; the chat screen that shows last has it.
  const std::shared_ptr<RecordingView>& recordingView();

  /// Receives the description of an uploaded clip, once; never called when none was sent.
  using RecordedClip = Once<void(UploadFileInfoModel)>;

  /// Serves an action of the page: "start" and "end" of a press, its "cancel", "hold" while the finger is away from
  /// the button and "recover" when it is back. Any other action, and one without a press, does nothing.
  void perform(const std::string& action, RecordedClip completion);

  /// Asks for the microphone; recording starts with the answer, unless the press has ended by then. A press that is
  /// under way gives way to the new one.
  void requestMicrophoneAndStart();

  /// Shows the overlay and keeps its level up to date.
  void beginOverlay();

  /// Shows the level of this moment.
  void setVoiceSoundSize();

  /// Drops the clip of the press that is under way. The recorder goes on, without a file, until the next start or
  /// `closeMicrophone`: a visitor who cancels usually talks again.
  void cancelRecording();

  /// Sends the clip of the press that is under way, if it lasted for a second at least. The recorder of a shorter one
  /// goes on as after `cancelRecording`.
  void finishRecording(RecordedClip completion);

  /// Cancels a press that is under way and gives the microphone back. A clip that is being sent is not touched.
  void closeMicrophone();

  RecordManager(const RecordManager&) = delete;
  RecordManager& operator=(const RecordManager&) = delete;

 private:
  RecordManager() = default;
  ~RecordManager() = default;

  /// What became of the press. The permission alone does not tell: once given, it stays given.
  enum class Press { none, asking, recording };

  void answered(std::uint64_t question, bool allowed);
  void setFingerAway(bool away);
  void endOverlay();
  void showTooShort();
  static void send(const Url& file, double seconds, RecordedClip completion);

  std::shared_ptr<RecordingView> view_;
  std::unique_ptr<Timer> overlayTimer_;
  Press press_ = Press::none;
  bool isFingerAway_ = false;
  std::uint64_t lastQuestion_ = 0;
  std::uint64_t overlayShowings_ = 0;
};

}  // namespace orivex
