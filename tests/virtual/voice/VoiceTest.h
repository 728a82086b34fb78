#pragma once

#include <memory>
#include <string>

#include "ChatScreenTest.h"

#include "orivex/voice/RecordManager.h"
#include "orivex/voice/VoiceManager.h"

namespace orivex::testing {

/// A chat screen in front of a visitor with a microphone.
class VoiceTest : public ChatScreenTest {
 protected:
  VoiceTest() {
    serveUploads(VirtualUploadReply::respond(
        200, R"({"url":"https://u/c.wav","inputContentType":"audio/wav","actualContentType":"audio/wav"})", 0.5));
    device_.runUntilIdle();
    log_.take();
  }

  /// Lets the page ask for an action of press-to-talk.
  void act(const std::string& action) {
    pageOf(*screen_).post("recording", R"({"deviceId":"d","action":")" + action + R"("})");
    device_.runUntilIdle();
  }

  /// Every recorder that was made, in order.
  const std::vector<std::shared_ptr<VirtualAudioSession::Recording>>& recordings() {
    return device_.audioSession().recordings();
  }

  /// "hidden", "volumn", "cancel" or "timeTooShort".
  static std::string overlay() {
    constexpr const char* names[] = {"volumn", "cancel", "timeTooShort"};
    const auto& view = RecordManager::shared().recordingView();
    return view->isHidden() ? "hidden" : names[static_cast<int>(view->recordingState())];
  }

  /// The scripts by which the page was given clips.
  Lines clips() {
    Lines found;
    if (!screen_) return found;
    for (const auto& script : pageOf(*screen_).scripts()) {
      if (script.starts_with("handleSelectedRecord(")) found.push_back(script);
    }
    return found;
  }

  std::shared_ptr<OVKFApi> screen_ = present();
};

}  // namespace orivex::testing
