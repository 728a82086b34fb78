#pragma once

#include <string>
#include <vector>

#include "orivex/media/ChatManager.h"
#include "orivex/voice/RecordManager.h"

namespace orivex::testing {

/// Stands in for the pickers and the recorder while it lives: notes what the page asked for and keeps the completions.
class FakePickers {
 public:
  struct Asked {
    std::string picker;
    PostMessageModel request;
    bool operator==(const Asked&) const = default;
  };

  FakePickers();
  FakePickers(const FakePickers&) = delete;
  FakePickers& operator=(const FakePickers&) = delete;
  ~FakePickers();

  std::vector<Asked> asked;
  std::vector<std::string> openedFiles;
  std::vector<std::string> recordingActions;

  /// Of the request that came last.
  ChatManager::PickedFiles files;
  RecordManager::RecordedClip clip;

 private:
  ChatManager::Picker picker(const char* name);

  ChatManager::Services services_;
  RecordManager::Recorder recorder_;
};

}  // namespace orivex::testing
