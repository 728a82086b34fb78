#include <limits>

#include "ChatScreenTest.h"
#include "FakePickers.h"

#include "orivex/voice/VoiceManager.h"

namespace orivex::testing {
namespace {

UploadFileInfoModel named(std::string name) {
  UploadFileInfoModel file;
  file.name = std::move(name);
  file.type = "File";
  file.suffix = "pdf";
  return file;
}

class BridgeAnswersTest : public ChatScreenTest {
 protected:
  BridgeAnswersTest() { ask(*screen_); }

  /// Lets the page ask for documents, so that the completion is there.
  void ask(OVKFApi& screen) {
    pageOf(screen).post("openDocumentPicker", R"({"deviceId":"d"})");
    device_.runUntilIdle();
    log_.take();
  }

  /// Lets the page record for 2.5 seconds; the clip is then on its way to the server for one more.
  void speak(OVKFApi& screen) {
    device_.recordPermission().remember(true);
    device_.httpClient().setUploadServer([](const UploadRequest&) {
      return VirtualUploadReply::respond(
          200, R"({"url":"https://u/c.wav","inputContentType":"audio/wav","actualContentType":"audio/wav"})", 1);
    });
    pageOf(screen).post("recording", R"({"deviceId":"d","action":"start"})");
    device_.advance(2.5);
    pageOf(screen).post("recording", R"({"deviceId":"d","action":"end"})");
    device_.runUntilIdle();
  }

  /// What was evaluated since the touch script.
  Lines answers() {
    device_.runUntilIdle();
    const auto& scripts = pageOf(*screen_).scripts();
    return {scripts.begin() + 1, scripts.end()};
  }

  FakePickers pickers_;
  const std::shared_ptr<OVKFApi> screen_ = present();
};

TEST_F(BridgeAnswersTest, WriteARecordToTheLogAndThenCallThePage) {
  speak(*screen_);
  EXPECT_EQ(answers(), Lines{});
  device_.advance(1);
  EXPECT_EQ(answers(),
            Lines{R"(handleSelectedRecord({"name":"c.wav","type":"Record","url":"https://u/c.wav","duration":2,)"
                  R"("suffix":"wav"});)"});
  EXPECT_EQ(log_.take("\"{"),
            Lines{R"("{\"name\":\"c.wav\",\"type\":\"Record\",\"url\":\"https://u/c.wav\",\"duration\":2,)"
                  R"(\"suffix\":\"wav\"}")"});
}

TEST_F(BridgeAnswersTest, AreOneLogLineWhenTheyCannotBeWritten) {
  auto endless = named("a");
  endless.duration = std::numeric_limits<double>::infinity();
  for (const auto& file : {endless, named("\xFF")}) {
    ask(*screen_);
    std::move(pickers_.files)({named("good"), file});
    EXPECT_EQ(answers(), Lines{});
    const auto lines = log_.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].starts_with("\"Error serializing JSON: ")) << lines[0];
  }
  device_.recordPermission().remember(true);
  pageOf(*screen_).post("recording", R"({"deviceId":"d","action":"start"})");
  device_.runUntilIdle();
  VoiceManager::shared().duration = std::numeric_limits<double>::infinity();
  pageOf(*screen_).post("recording", R"({"deviceId":"d","action":"end"})");
  device_.advance(1);
  EXPECT_EQ(answers(), Lines{});
  EXPECT_EQ(log_.take("\"Error serializing JSON: ").size(), 1U);
}

TEST_F(BridgeAnswersTest, AreOneLogLineWhenThePageFails) {
  pageOf(*screen_).failNextEvaluation("ReferenceError: handleSelectedFiles");
  std::move(pickers_.files)({named("a")});
  device_.runUntilIdle();
  EXPECT_EQ(log_.take(), Lines{R"("Error evaluating JavaScript: ReferenceError: handleSelectedFiles")"});
}

TEST_F(BridgeAnswersTest, ComeToNothingOnceTheScreenIsGone) {
  std::weak_ptr<OVKFApi> gone;
  {
    const auto screen = started();
    gone = screen;
    screen_->present(screen, false);
    ask(*screen);
    speak(*screen);
    screen->dismiss(false);
  }
  EXPECT_TRUE(gone.expired());  // neither an open picker nor an upload holds the screen
  log_.take();
  std::move(pickers_.files)({named("late")});
  device_.advance(10);
  EXPECT_EQ(log_.take(), Lines{"Upload Success"});
  EXPECT_EQ(answers(), Lines{});
}

}  // namespace
}  // namespace orivex::testing
