#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "orivex/models/UploadModels.h"
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

  /// Receives the description of an uploaded clip; never called when none was sent.
  using RecordedClip = std::function<void(UploadFileInfoModel)>;

  /// Serves an action of the page: "start" and "end" of a press, its "cancel", "hold" while the finger is away from
  /// the button and "recover" when it is back. Any other action, and one without a press, does nothing.
  void perform(const std::string& action, RecordedClip completion);

  /// Asks for the microphone, for which nothing is allowed until the answer is there; recording starts with it, unless
  /// the press has ended by then. A press that is under way gives way to the new one.
  void requestMicrophoneAndStart();

  /// Shows the overlay and keeps its level up to date.
  void beginOverlay();

  /// Shows the level of this moment.
  void setVoiceSoundSize();

  /// Drops the clip that is recorded, or lets a question for the microphone start nothing. The recorder goes on, and
  /// nothing of it is kept, until the next start or `closeMicrophone`: a visitor who cancels usually talks again.
  void cancelRecording();

  /// Sends the clip that is recorded, if it lasted for a second at least, and deletes it once the server has it; until
  /// then the visitor can have it sent again. The recorder of a shorter one goes on as after `cancelRecording`. The
  /// visitor is told of a microphone without a sound and of a disk without room; what such a disk has cut off is not
  /// sent.
  void finishRecording(RecordedClip completion);

  /// Cancels a press that is under way and gives the microphone back. A clip that is being sent is not touched.
  void closeMicrophone();

  /// The same if `screen` has the overlay: another chat screen may have taken it over, and with it the microphone.
  void closeMicrophoneOf(const View& screen);

  RecordManager(const RecordManager&) = delete;
  RecordManager& operator=(const RecordManager&) = delete;

 private:
  friend class ProcessState;
  RecordManager() = default;
  ~RecordManager() = default;

  void answered(std::uint64_t question, bool allowed);
  void setFingerAway(bool away);
  void endOverlay();
  static void dropClip();
  std::optional<std::string> clipFault() const;
  void showTooShort();
  void send(const Url& file, double seconds, RecordedClip completion);

  std::shared_ptr<RecordingView> view_;
  std::unique_ptr<Timer> overlayTimer_;  // runs from `beginOverlay` to the end of the press
  double overlayBegan_ = 0;              // in the main queue's seconds
  bool isFingerAway_ = false;
  std::uint64_t lastQuestion_ = 0;
  bool isAllowed_ = false;  // the answer to it
  std::uint64_t overlayShowings_ = 0;
};

}  // namespace orivex
