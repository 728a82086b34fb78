#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// Sound without sound: recorders and players that are only remembered, at a level that a test sets.
class VirtualAudioSession final : public AudioSession {
 public:
  /// What happened to one recorder.
  struct Recording {
    std::string path;
    AudioSettings settings;
    bool metering = false;
    bool recording = false;
    bool discarded = false;  ///< nothing more of it is kept
    bool diskFull = false;   ///< it ended for want of room
    bool destroyed = false;
    double seconds = 0;  ///< of sound, up to `since`
    double since = 0;    ///< when the microphone was opened, in the queue's seconds
    bool deaf = false;   ///< the microphone gives nothing
  };
  struct Playing {
    std::string path;
    bool playing = false;
  };

  explicit VirtualAudioSession(const MainQueue& queue) : queue_(queue) {}

  std::optional<Failure> setCategory(AudioSessionCategory category) override;
  std::optional<Failure> setActive(bool active) override;
  std::variant<std::unique_ptr<AudioRecorder>, Failure> makeRecorder(const Url& file,
                                                                     const AudioSettings& settings) override;
  std::variant<std::unique_ptr<AudioPlayer>, Failure> makePlayer(const Url& file) override;

  /// Each of these fails from now on for this reason; empty: it succeeds.
  void failCategory(std::string reason) { categoryFailure_ = std::move(reason); }
  void failActivation(std::string reason) { activationFailure_ = std::move(reason); }
  void failRecorders(std::string reason) { recorderFailure_ = std::move(reason); }
  void failPlayers(std::string reason) { playerFailure_ = std::move(reason); }

  /// What the microphone hears from now on, in dBFS.
  void setPeakPower(float level) { *peakPower_ = level; }

  /// Ends the recording of every recorder, as a sound server that goes away does.
  void interrupt();

  /// Later recorders get no sound, as from a microphone that is not there.
  void unplugMicrophone() { deaf_ = true; }

  /// Ends the recording of every recorder for want of room; later ones do not begin until there is room again.
  void fillDisk(bool full = true);

  const std::optional<AudioSessionCategory>& category() const { return category_; }
  bool isActive() const { return active_; }

  /// Every recorder and player that was made, in order.
  const std::vector<std::shared_ptr<Recording>>& recordings() const { return recordings_; }
  const std::vector<std::shared_ptr<Playing>>& playings() const { return playings_; }
  /// Drops the recorders that are gone and the players that are silent.
  void forgetSounds() {
    std::erase_if(recordings_, [](const auto& recording) { return recording->destroyed; });
    std::erase_if(playings_, [](const auto& sound) { return !sound->playing; });
  }

 private:
  const MainQueue& queue_;
  std::string categoryFailure_;
  std::string activationFailure_;
  std::string recorderFailure_;
  std::string playerFailure_;
  std::optional<AudioSessionCategory> category_;
  bool active_ = false;
  bool deaf_ = false;
  bool diskFull_ = false;
  std::shared_ptr<float> peakPower_ = std::make_shared<float>(-160.0F);
  std::vector<std::shared_ptr<Recording>> recordings_;
  std::vector<std::shared_ptr<Playing>> playings_;
};

/// A visitor who answers when a test says so.
class VirtualRecordPermission final : public RecordPermission {
 public:
  explicit VirtualRecordPermission(MainQueue& queue) : queue_(queue) {}

  void request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) override;

  /// Answers every open question, from a worker thread of the queue.
  void answer(bool granted);

  /// Answers later questions at once.
  void remember(bool granted) { remembered_ = granted; }
  void forget() { remembered_.reset(); }

  /// The names in which the visitor was asked.
  const std::vector<std::string>& asked() const { return asked_; }
  void forgetAsked() { asked_.clear(); }

 private:
  void deliver(Once<void(bool)> answer, bool granted);

  MainQueue& queue_;
  std::optional<bool> remembered_;
  std::vector<std::string> asked_;
  std::vector<Once<void(bool)>> open_;
  Subscription leaves_;
};

}  // namespace orivex::testing
