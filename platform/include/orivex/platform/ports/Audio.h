#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class View;

/// Settings of a recorder by key. Integers are of 64 bits, the format identifier is the unsigned value of its four
/// characters.
using AudioSettings = std::map<std::string, std::variant<std::int64_t, std::uint32_t>, std::less<>>;

/// One recording into one file, as WAV. Main thread. Destroying it stops it; the file is whole then.
class AudioRecorder : public Interface {
 public:
  virtual void setMeteringEnabled(bool enabled) = 0;

  /// Makes the file and gets the microphone ready; false when that fails.
  virtual bool prepareToRecord() = 0;

  /// Starts; false when that fails. What goes wrong later is one log line and ends `isRecording`.
  virtual bool record() = 0;

  virtual bool isRecording() const = 0;

  /// Ends the recording. The file on disk is whole when this returns.
  virtual void stop() = 0;

  /// Keeps nothing of what is recorded from now on, in the file or anywhere else. The recording itself goes on.
  virtual void discard() = 0;

  /// Seconds of sound that the microphone has given so far, kept or not; 0 as long as it gives nothing.
  virtual double recordedSeconds() const = 0;

  /// Whether the recording ended, or never began, because its disk has no room.
  virtual bool isDiskFull() const = 0;

  /// Takes the level that `peakPower` then tells.
  virtual void updateMeters() = 0;

  /// Highest level of `channel` since the update before the last, in dBFS: at most 0, and -160 for silence, without
  /// metering and for a channel that is not recorded.
  virtual float peakPower(int channel) const = 0;
};

/// Plays one file. Main thread. Destroying it stops it.
class AudioPlayer : public Interface {
 public:
  /// Plays from the start; false when that fails.
  virtual bool play() = 0;
  virtual bool isPlaying() const = 0;
  virtual void stop() = 0;
};

enum class AudioSessionCategory { playback, record, playAndRecord };

/// The application's use of sound, and what records and plays. Main thread.
class AudioSession : public Interface {
 public:
  /// What the application uses sound for. Nothing on success, else why not.
  virtual std::optional<Failure> setCategory(AudioSessionCategory category) = 0;

  /// Takes or gives back the sound devices. Nothing on success, else why not.
  virtual std::optional<Failure> setActive(bool active) = 0;

  /// A recorder into the file at `file`, which it will create. A failure when the settings or the place do not serve.
  virtual std::variant<std::unique_ptr<AudioRecorder>, Failure> makeRecorder(const Url& file,
                                                                             const AudioSettings& settings) = 0;

  /// A player of the file at `file`.
  virtual std::variant<std::unique_ptr<AudioPlayer>, Failure> makePlayer(const Url& file) = 0;
};

/// Whether the application may use the microphone.
class RecordPermission : public Interface {
 public:
  /// Asks the visitor in the name of `applicationName`, unless the answer is known already. Main thread; `answer` is
  /// called at most once, not inside this call and on an arbitrary thread. A question that ends without an answer, for
  /// example with its window, is a refusal that is not remembered. One that is open when the screen of `view` leaves
  /// ends with it: nothing is remembered, and `answer` is never called.
  virtual void request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) = 0;
};

}  // namespace orivex
