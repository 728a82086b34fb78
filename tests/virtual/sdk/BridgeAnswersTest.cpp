#include <algorithm>
#include <limits>

#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

class BridgeAnswersTest : public ChatScreenTest {
 protected:
  /// Lets the page ask for photos, and the visitor choose some of these widths after what happens `meanwhile`.
  void choose(
      OVKFApi& screen, const std::vector<double>& widths, const std::function<void()>& meanwhile = [] {}) {
    pageOf(screen).post("openPhotoLibraryPicker", R"({"deviceId":"d"})");
    device_.runUntilIdle();
    meanwhile();
    device_.runUntilIdle();
    log_.take();
    PhotoSelection selection;
    for (const double width : widths) {
      const auto path = "/" + std::to_string(width);
      device_.imageCodec().put(path, {"jpeg", {width, 1}});
      selection.items.push_back({MediaType::image, Url::fromFilePath(path)});
    }
    device_.photoLibrary().select(std::move(selection));
  }

  /// Lets the page record for 2.5 seconds; the clip is then on its way to the server for one more.
  void speak(OVKFApi& screen) {
    device_.recordPermission().remember(true);
    serveUploads(VirtualUploadReply::respond(
        200, R"({"url":"https://u/c.wav","inputContentType":"audio/wav","actualContentType":"audio/wav"})", 1));
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

  auto answerCount() {
    const auto scripts = answers();
    return std::count_if(scripts.begin(), scripts.end(),
                         [](const std::string& script) { return script.starts_with("handleSelectedFiles("); });
  }

  const std::shared_ptr<OVKFApi> screen_ = present();
};

TEST_F(BridgeAnswersTest, AreOneLogLineWhenTheyCannotBeWritten) {
  choose(*screen_, {1, std::numeric_limits<double>::infinity()});
  EXPECT_EQ(answers(), Lines{});
  const auto lines = log_.take();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0].starts_with("\"Error serializing JSON: ")) << lines[0];
}

TEST_F(BridgeAnswersTest, AreOneLogLineWhenThePageFails) {
  pageOf(*screen_).failNextEvaluation("ReferenceError: handleSelectedFiles");
  choose(*screen_, {1});
  device_.runUntilIdle();
  EXPECT_EQ(log_.take(), Lines{R"("Error evaluating JavaScript: ReferenceError: handleSelectedFiles")"});
}

TEST_F(BridgeAnswersTest, WaitForAPageWhoseProcessDiedWhileTheVisitorChose) {
  auto& page = pageOf(*screen_);
  device_.runUntilIdle();
  page.completeLoad();
  device_.runUntilIdle();
  choose(*screen_, {1}, [&] { page.die(); });
  device_.advance(1);
  ASSERT_EQ(page.reloadCount(), 1);
  EXPECT_EQ(answerCount(), 0) << "nobody is there to take it";
  page.completeLoad();
  EXPECT_EQ(answerCount(), 1);
}

TEST_F(BridgeAnswersTest, AreGivenOnceMoreToAPageWhoseProcessDiedBeforeItReadThem) {
  auto& page = pageOf(*screen_);
  device_.runUntilIdle();
  page.completeLoad();
  int deaths = 0;
  device_.webEngines().setScriptRunner([&](VirtualWebEngine& engine, const std::string& script) {
    if (!script.starts_with("handleSelectedFiles(")) return std::optional<std::string>();
    ++deaths;
    engine.die();
    return std::optional<std::string>();
  });
  choose(*screen_, {1});
  for (int count = 1; count <= 2; ++count) {
    EXPECT_EQ(answerCount(), count);
    device_.advance(1);
    ASSERT_EQ(page.reloadCount(), count);
    page.completeLoad();
  }
  device_.advance(1);
  EXPECT_EQ(answerCount(), 2) << "a page that dies of it does not get it again";
  EXPECT_EQ(deaths, 2);
  EXPECT_TRUE(log_.has("Error evaluating JavaScript: The page's process has gone"));
}

TEST_F(BridgeAnswersTest, ComeToNothingOnceTheScreenIsGone) {
  std::weak_ptr<OVKFApi> gone;
  {
    const auto screen = started();
    gone = screen;
    screen_->present(screen, false);
    speak(*screen);
    choose(*screen, {1});
    screen->dismiss(false);
  }
  EXPECT_TRUE(gone.expired());  // neither a choice nor an upload holds the screen
  log_.take();
  device_.advance(10);
  EXPECT_EQ(log_.take(), Lines{"Upload Success"});
  EXPECT_EQ(answers(), Lines{});
}

}  // namespace
}  // namespace orivex::testing
