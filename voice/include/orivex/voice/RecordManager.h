#pragma once

#include <functional>
#include <memory>
#include <string>

#include "orivex/models/UploadFileInfoModel.h"
#include "orivex/platform/base/Once.h"
#include "orivex/voice/RecordingView.h"

namespace orivex {

/// The press-to-talk controller. One per process, made on first use and never destroyed. Main thread.
class RecordManager {
 public:
  static RecordManager& shared();

  /// The overlay, made on first use; the chat screen that shows last has it.
  const std::shared_ptr<RecordingView>& recordingView();

  /// Receives the description of an uploaded clip, once; never called when none was sent.
  using RecordedClip = Once<void(UploadFileInfoModel)>;

  /// What serves the actions "start", "end", "cancel", "hold" and "recover" of the page. Empty in a build without a
  /// recorder; an action is then one log line.
  using Recorder = std::function<void(const std::string& action, RecordedClip completion)>;
  Recorder recorder;

  /// Hands an action of the page to the recorder.
  void perform(const std::string& action, RecordedClip completion);

  /// Ends a press that is under way without sending anything.
  void cancelRecording();

  RecordManager(const RecordManager&) = delete;
  RecordManager& operator=(const RecordManager&) = delete;

 private:
  RecordManager() = default;
  ~RecordManager() = default;

  std::shared_ptr<RecordingView> view_;
};

}  // namespace orivex
