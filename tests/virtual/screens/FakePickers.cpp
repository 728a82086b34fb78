#include "FakePickers.h"

namespace orivex::testing {

FakePickers::FakePickers() : services_(ChatManager::shared().services), recorder_(RecordManager::shared().recorder) {
  ChatManager::shared().services = {
      picker("camera"), picker("photoLibrary"), picker("documents"),
      [this](const Url& file, ViewController& /*screen*/) { openedFiles.push_back(file.absoluteString()); }};
  RecordManager::shared().recorder = [this](const std::string& action, RecordManager::RecordedClip completion) {
    recordingActions.push_back(action);
    clip = std::move(completion);
  };
}

FakePickers::~FakePickers() {
  ChatManager::shared().services = services_;
  RecordManager::shared().recorder = recorder_;
}

ChatManager::Picker FakePickers::picker(const char* name) {
  return
      [this, name](const PostMessageModel& request, ViewController& /*screen*/, ChatManager::PickedFiles completion) {
        asked.push_back({name, request});
        files = std::move(completion);
      };
}

}  // namespace orivex::testing
