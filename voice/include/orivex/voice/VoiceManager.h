#pragma once

#include <memory>
#include <optional>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex {

/// Records one voice clip at a time into a WAV file of the component's documents folder: 16 kHz, mono, 16 bits. No
/// failure reaches the caller; each is one log line, and recording goes on where it can. Main thread unless said
/// otherwise. The process uses `shared`.
class VoiceManager {
 public:
  VoiceManager() = default;
  VoiceManager(const VoiceManager&) = delete;
  VoiceManager& operator=(const VoiceManager&) = delete;
  ~VoiceManager() = default;

  /// Made on first use (thread-safe) and never destroyed.
  static VoiceManager& shared();

  /// Milliseconds of the clip that is being, or was last, recorded, in whole seconds that have sound.
  double duration = 0;

  /// That clip's file.
  std::optional<Url> recorder_file_path;

  /// Absent while nothing is recorded.
  std::unique_ptr<AudioRecorder> recorder;

  /// What `play` started last.
  std::unique_ptr<AudioPlayer> player;

  /// Counts the seconds of the clip that is being recorded.
  std::unique_ptr<Timer> timer;

  /// A number kept beside the file path.
  int pathTag = 0;

  /// The last answer to the question for the microphone.
  bool isRecordingAllowed = false;

  /// The press has ended before that answer came.
  bool isStop = false;

  /// Begins a clip in a new file; without permission it does nothing.
  void startRecording();

  /// Ends the clip and gives the microphone back.
  void stopRecording();

  /// One second of recording has passed.
  void recordingTime() { duration += 1000.0; }

  /// How loud it is, from 0 to 1; 0 while nothing is recorded. Allocates nothing.
  float currentVolumeLevel();

  /// A new place for a clip in the documents folder; a device without such a folder stops the process.
  static Url makeRecordingFileURL();

  /// Removes the clip's file.
  void deleteRecordingFile();

  /// Stores the answer to the question for the microphone on the main queue, then calls `continuation` with it there.
  /// Any thread.
  void setRecordingAllowed(bool allowed, Once<void(bool allowed)> continuation);

  /// Plays the clip at `file` from its start; false, with a log line, when that fails.
  bool play(const Url& file);

 private:
  Alive alive_;
};

}  // namespace orivex
