#include "FakePickers.h"

namespace orivex::testing {

FakePickers::FakePickers() {
  ChatManager::shared().services = {
      picker("camera"), picker("photoLibrary"), picker("documents"),
      [this](const Url& file, ViewController& /*screen*/) { openedFiles.push_back(file.absoluteString()); }};
}

ChatManager::Picker FakePickers::picker(const char* name) {
  return
      [this, name](const PostMessageModel& request, ViewController& /*screen*/, ChatManager::PickedFiles completion) {
        asked.push_back({name, request});
        files = std::move(completion);
      };
}

}  // namespace orivex::testing
