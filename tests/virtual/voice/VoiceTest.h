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
  VoiceTest();

  /// Lets the page ask for an action of press-to-talk.
  void act(const std::string& action);

  /// Every recorder that was made, in order.
  const std::vector<std::shared_ptr<VirtualAudioSession::Recording>>& recordings() {
    return device_.audioSession().recordings();
  }

  /// "hidden", "volumn", "cancel" or "timeTooShort".
  static std::string overlay();

  /// The scripts by which the page was given clips.
  Lines clips();

  std::shared_ptr<OVKFApi> screen_ = present();
};

}  // namespace orivex::testing
