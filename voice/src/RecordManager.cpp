#include "orivex/voice/RecordManager.h"

#include "orivex/platform/base/Log.h"

namespace orivex {

RecordManager& RecordManager::shared() {
  static auto* const instance = new RecordManager;
  return *instance;
}

const std::shared_ptr<RecordingView>& RecordManager::recordingView() {
  if (!view_) view_ = RecordingView::make();
  return view_;
}

void RecordManager::perform(const std::string& action, RecordedClip completion) {
  if (recorder) {
    recorder(action, std::move(completion));
  } else {
    log::print("This build has no recorder");
  }
}

void RecordManager::cancelRecording() {
  recordingView()->setHidden(true);
}

}  // namespace orivex
