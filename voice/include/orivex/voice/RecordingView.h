#pragma once

#include "orivex/platform/ui/ContentViews.h"

namespace orivex {

/// What the press-to-talk overlay shows.
enum class RecordingState : int { volumn = 0, cancel = 1, timeTooShort = 2 };

/// The press-to-talk overlay: a rounded dark square with one picture and one caption per state, and a level bar while
/// recording. Its own text, over the picture, is how long the clip is. Hidden until a recording starts.
class RecordingView : public Label {
 public:
  /// Length of each side, in points.
  static constexpr double side = 120;

  /// Tag of the level bar.
  static constexpr int levelTag = 10;

  static std::shared_ptr<RecordingView> make();

  RecordingState recordingState() const { return state_; }

  /// Rebuilds the content for `state`.
  void setRecordingState(RecordingState state);

  /// From 0 to 1.
  float volume() const { return volume_; }

  /// Sets the height of the level bar while the state is `volumn`; its bottom edge stays.
  void setVolume(float volume);

  /// Length of the clip; not shown while the state is `timeTooShort`.
  int seconds() const { return seconds_; }
  void setSeconds(int seconds);

  /// Use `make`.
  RecordingView() : Label({0, 0, side, side}) {}

 private:
  void showTime();
  void addImage(const char* name, const Rect& frame);
  void addLevel(const Rect& besides);
  void addCaption(const char* text);

  RecordingState state_ = RecordingState::volumn;
  float volume_ = 0;
  int seconds_ = 0;
};

}  // namespace orivex
