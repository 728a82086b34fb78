#pragma once

#include <string>
#include <vector>

#include "orivex/media/ChatManager.h"

namespace orivex::testing {

/// Stands in for the pickers of a device: notes what the page asked for and keeps the completion.
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
  ~FakePickers() = default;

  std::vector<Asked> asked;
  std::vector<std::string> openedFiles;

  /// Of the request that came last.
  ChatManager::PickedFiles files;

 private:
  ChatManager::Picker picker(const char* name);
};

}  // namespace orivex::testing
