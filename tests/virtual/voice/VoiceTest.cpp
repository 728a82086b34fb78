#include "VoiceTest.h"

namespace orivex::testing {

VoiceTest::VoiceTest() {
  device_.httpClient().setUploadServer([](const UploadRequest&) {
    return VirtualUploadReply::respond(
        200, R"({"url":"https://u/c.wav","inputContentType":"audio/wav","actualContentType":"audio/wav"})", 0.5);
  });
  device_.runUntilIdle();
  log_.take();
}

void VoiceTest::act(const std::string& action) {
  pageOf(*screen_).post("recording", R"({"deviceId":"d","action":")" + action + R"("})");
  device_.runUntilIdle();
}

std::string VoiceTest::overlay() {
  constexpr const char* names[] = {"volumn", "cancel", "timeTooShort"};
  const auto& view = RecordManager::shared().recordingView();
  return view->isHidden() ? "hidden" : names[static_cast<int>(view->recordingState())];
}

Lines VoiceTest::clips() {
  Lines found;
  if (!screen_) return found;
  for (const auto& script : pageOf(*screen_).scripts()) {
    if (script.starts_with("handleSelectedRecord(")) found.push_back(script);
  }
  return found;
}

}  // namespace orivex::testing
