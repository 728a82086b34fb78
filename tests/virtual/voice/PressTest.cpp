#include <algorithm>
#include <sstream>

#include "VoiceTest.h"

#include "orivex/platform/base/Text.h"
#include "orivex/platform/ui/ScreenEdgePanGesture.h"

namespace orivex::testing {
namespace {

/// Plays a press of words: actions of the page, what else happens to the device, and seconds that pass.
class PressTest : public VoiceTest {
 protected:
  void play(const std::string& words) {
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
      if (std::isdigit(word.front())) {
        device_.advance(std::stod(word));
      } else {
        happen(word);
        device_.runUntilIdle();
      }
    }
  }

  void happen(const std::string& word) {
    if (word == "allow" || word == "refuse") {
      device_.recordPermission().answer(word == "allow");
    } else if (word == "leave") {
      device_.application().resignActive();
    } else if (word == "close") {
      screen_->close();
      device_.advance(1);
    } else if (word == "destroy") {
      screen_->dismiss(false);
      screen_.reset();
    } else if (word == "crash") {
      pageOf(*screen_).die();
    } else if (word == "interrupt") {
      device_.audioSession().interrupt();
    } else if (word == "unplug") {
      device_.audioSession().unplugMicrophone();
    } else if (word == "fill") {
      device_.audioSession().fillDisk();
    } else if (word == "tidy") {
      device_.audioSession().fillDisk(false);
    } else if (word == "fail") {
      device_.audioSession().failRecorders("no microphone");
    } else if (word == "readonly") {
      device_.fileManager().failRemoval("read-only");
    } else if (screen_) {
      act(word);
    }
  }

  /// Recorders made and those with an open microphone, files removed, clips sent, what the page got, what shows.
  std::string state() {
    const auto open = std::count_if(recordings().begin(), recordings().end(),
                                    [](const auto& recording) { return recording->recording; });
    std::string text = std::to_string(recordings().size()) + " made, " + std::to_string(open) + " open, " +
                       std::to_string(device_.fileManager().removed().size()) + " removed, " +
                       std::to_string(device_.httpClient().uploads().size()) + " sent, " +
                       std::to_string(clips().size()) + " answered, " + overlay();
    return text;
  }
};

struct Case {
  const char* words;
  const char* state;
};

// How a case is called in a list of tests.
void PrintTo(const Case& press, std::ostream* out) {
  *out << press.words;
}

class PressStateTest : public PressTest, public ::testing::WithParamInterface<Case> {};

TEST_P(PressStateTest, EndsWhereItShould) {
  play(GetParam().words);
  EXPECT_EQ(state(), GetParam().state);
  const bool seen = overlay() == "volumn" || overlay() == "cancel";
  for (const auto& recording : recordings()) {
    EXPECT_TRUE(seen || !recording->recording || recording->discarded) << "sound is kept that nobody will send";
  }
  // Whatever it was, nothing of it outlives the screen.
  if (screen_) play("close 10");
  for (const auto& recording : recordings()) EXPECT_FALSE(recording->recording);
  EXPECT_EQ(overlay(), "hidden");
}

INSTANTIATE_TEST_SUITE_P(
    Waiting, PressStateTest,
    ::testing::Values(
        Case{"start", "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden"},
        Case{"start allow", "1 made, 1 open, 0 removed, 0 sent, 0 answered, volumn"},
        Case{"start end allow 5", "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden"},
        Case{"start cancel allow 5", "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden"},
        Case{"start leave allow 5", "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden"},
        Case{"start destroy allow 5", "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden"},
        Case{"start end start allow", "1 made, 1 open, 0 removed, 0 sent, 0 answered, volumn"},
        Case{"start hold allow", "1 made, 1 open, 0 removed, 0 sent, 0 answered, cancel"},
        // The permission of an earlier press must not make this one look like a recording.
        Case{"start allow 2 end start end allow 5", "1 made, 0 open, 1 removed, 1 sent, 1 answered, hidden"},
        Case{"start allow 2 end start leave 1", "1 made, 0 open, 1 removed, 1 sent, 1 answered, hidden"}));

INSTANTIATE_TEST_SUITE_P(
    Speaking, PressStateTest,
    ::testing::Values(
        Case{"start allow 0.9 end", "1 made, 1 open, 1 removed, 0 sent, 0 answered, timeTooShort"},
        Case{"start allow 0.9 end 1", "1 made, 1 open, 1 removed, 0 sent, 0 answered, hidden"},
        Case{"start allow 0.9 end start allow 1", "2 made, 1 open, 1 removed, 0 sent, 0 answered, volumn"},
        Case{"start allow 1.2 end 1 end 5", "1 made, 0 open, 1 removed, 1 sent, 1 answered, hidden"},
        Case{"start allow hold recover", "1 made, 1 open, 0 removed, 0 sent, 0 answered, volumn"},
        Case{"start allow 2 hold 1 end", "1 made, 0 open, 0 removed, 1 sent, 0 answered, hidden"},
        Case{"start allow 2 start allow 1.5 end 1", "2 made, 0 open, 2 removed, 1 sent, 1 answered, hidden"},
        Case{"start allow 2 end start allow 1.5 end 1", "2 made, 0 open, 2 removed, 2 sent, 2 answered, hidden"}));

INSTANTIATE_TEST_SUITE_P(
    Cancelling, PressStateTest,
    ::testing::Values(Case{"cancel end hold recover 1", "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden"},
                      // The recorder goes on until something ends it.
                      Case{"start allow 2 cancel", "1 made, 1 open, 1 removed, 0 sent, 0 answered, hidden"},
                      Case{"start allow 2 cancel 5 end 5", "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden"},
                      Case{"start allow 2 cancel leave", "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden"},
                      Case{"start allow 2 cancel 5 start allow 0.5 end",
                           "2 made, 1 open, 2 removed, 0 sent, 0 answered, timeTooShort"},
                      Case{"start allow 2 leave end 1", "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden"},
                      Case{"start allow 2 destroy", "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden"},
                      Case{"start allow 2 crash", "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden"},
                      // What was good stays good.
                      Case{"start allow 2 end leave 1", "1 made, 0 open, 1 removed, 1 sent, 1 answered, hidden"},
                      Case{"start allow 2 end destroy 1", "1 made, 0 open, 1 removed, 1 sent, 0 answered, hidden"}));

INSTANTIATE_TEST_SUITE_P(
    Failing, PressStateTest,
    ::testing::Values(
        Case{"start allow 2.5 interrupt 3 end 1", "1 made, 0 open, 1 removed, 1 sent, 1 answered, hidden"},
        Case{"start allow 0.5 interrupt 3 end", "1 made, 0 open, 1 removed, 0 sent, 0 answered, timeTooShort"},
        Case{"fail start allow 3", "0 made, 0 open, 0 removed, 0 sent, 0 answered, volumn"},
        Case{"fail start allow 3 end 1", "0 made, 0 open, 1 removed, 0 sent, 0 answered, hidden"},
        Case{"start allow 2 cancel fail start allow 2 end 1", "1 made, 0 open, 2 removed, 0 sent, 0 answered, hidden"},
        Case{"readonly start allow 2 cancel 1", "1 made, 1 open, 0 removed, 0 sent, 0 answered, hidden"}));

TEST_F(PressTest, CountsOnlyWhatWasRecorded) {
  play("start allow 2.5 interrupt 3 end 1");
  EXPECT_EQ(log_.take("\"{").size(), 1U) << "the answer is not in the log";
  EXPECT_EQ(clips(), Lines{R"(handleSelectedRecord({"name":"c.wav","type":"Record","url":"https://u/c.wav",)"
                           R"("duration":2,"suffix":"wav"});)"});
}

TEST_F(PressTest, ASilentMicrophoneAndAFullDiskAreToldAndNothingIsSent) {
  device_.recordPermission().remember(true);
  const std::string removed = "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden";
  const struct {
    const char* words;
    const char* text;
  } cases[] = {
      {"start 1.5 fill 2 end", "存储空间不足,录音不完整,没有发送"},
      {"tidy start 0.5 fill end", "存储空间不足,录音不完整,没有发送"},
      {"fill start 3 end", "存储空间不足,无法录音"},
      {"tidy unplug start 3 end", "没有找到麦克风"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.words);
    device_.audioSession().forgetSounds();
    device_.fileManager().forgetRemoved();
    play(row.words);
    EXPECT_EQ(state(), removed);
    ASSERT_TRUE(device_.progressOverlay().shown());
    EXPECT_EQ(device_.progressOverlay().shown()->status, row.text);
    play("3");
  }
  play("start 0.5 end");
  EXPECT_EQ(overlay(), "timeTooShort") << "too soon to say anything about the microphone";
}

TEST_F(PressTest, AnEdgeSwipeTakesTheFingerAwayFromThePress) {
  play("start allow 2");
  screen_->view()->gestures().at(0)->report(ScreenEdgePanGesture::State::began, 9);
  EXPECT_EQ(state(), "1 made, 1 open, 1 removed, 0 sent, 0 answered, hidden");
  EXPECT_TRUE(recordings()[0]->discarded);
  play("end 1");
  EXPECT_TRUE(clips().empty());
}

TEST_F(PressTest, ARefusalIsToldAndTakesNothingWithIt) {
  play("start refuse 10");
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows 无法录制声音，前往\"设置 > Virtual Host\"中打开麦克风权限",
                                   "3.0 hides 无法录制声音，前往\"设置 > Virtual Host\"中打开麦克风权限"}));
  EXPECT_EQ(log_.take("Microphone"), Lines{"Microphone permission denied"});
  EXPECT_EQ(state(), "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden");
}

TEST_F(PressTest, WhoCannotSeeTheOverlayIsToldOfItsEnds) {
  play("cancel end start cancel allow start allow 0.9 end 2");
  play("start allow 2 cancel cancel leave start allow 2 end 1 close");
  EXPECT_EQ(
      device_.progressOverlay().announced(),
      (std::vector<std::string>{"正在录音", "正在录音", "已取消录音", "正在录音", "录音结束", "正在上传", "上传完成"}));
}

TEST_F(PressTest, AnotherChatScreenTakesTheOverlayAndGivesItBack) {
  const auto second = started();
  screen_->present(second, false);
  device_.runUntilIdle();
  EXPECT_TRUE(second->view()->hasSubview(*RecordManager::shared().recordingView()));
  second->dismiss(false);
  device_.runUntilIdle();
  play("start allow 2");
  EXPECT_TRUE(screen_->view()->hasSubview(*RecordManager::shared().recordingView()));
  EXPECT_EQ(overlay(), "volumn");
}

TEST_F(PressTest, TheVisitorSeesHowLongTheClipIs) {
  const auto& view = *RecordManager::shared().recordingView();
  const std::pair<const char*, const char*> cases[] = {
      {"start allow 0.5", "0:00"}, {"0.6", "0:01"},    {"hold 1", "0:02"},      {"recover 60", "1:02"},
      {"interrupt 3", "1:02"},     {"cancel", "1:02"}, {"start allow", "0:00"}, {"0.9 end", ""}};
  for (const auto& [words, text] : cases) {
    play(words);
    EXPECT_EQ(view.text(), text) << words;
  }
}

TEST_F(PressTest, EndsWithTheDocumentThatBeganItAndNotWithAnotherPage) {
  const auto covered = std::make_shared<OVKFApi>();
  hostStack_->pushViewController(covered, false);
  EXPECT_TRUE(screen_->view()->hasSubview(*RecordManager::shared().recordingView())) << "nobody sees the other";
  play("start allow 2");
  auto& other = pageOf(*covered);
  other.commit("https://chat.example/other");
  other.die();
  device_.runUntilIdle();
  EXPECT_EQ(state(), "1 made, 1 open, 0 removed, 0 sent, 0 answered, volumn");
  pageOf(*screen_).commit("https://chat.example/again");
  device_.runUntilIdle();
  EXPECT_EQ(state(), "1 made, 0 open, 1 removed, 0 sent, 0 answered, hidden");
}

TEST_F(PressTest, AnAnswerToAnEarlierPressOpensNoMicrophoneAfterTheScreenHasLeft) {
  play("start");
  device_.recordPermission().answer(true);
  play("start");  // before the answer came
  device_.recordPermission().answer(true);
  hostStack_->dismiss(false);
  device_.advance(1);
  EXPECT_EQ(state(), "0 made, 0 open, 0 removed, 0 sent, 0 answered, hidden");
}

TEST_F(PressTest, TheLevelFollowsTheMicrophoneTenTimesASecond) {
  const auto height = [] {
    const auto level = RecordManager::shared().recordingView()->viewWithTag(RecordingView::levelTag)->frame();
    EXPECT_EQ(level, (Rect{87, 85 - level.height, 20, level.height})) << "it rises from its bottom edge";
    return level.height;
  };
  device_.audioSession().setPeakPower(0);
  play("start allow 0.09");
  EXPECT_EQ(height(), 0);
  play("0.01");
  EXPECT_EQ(height(), 41.25);
  device_.audioSession().setPeakPower(-90);
  play("0.1");
  EXPECT_EQ(height(), 0);
  play("hold");
  device_.audioSession().setPeakPower(0);
  play("0.2");
  EXPECT_EQ(RecordManager::shared().recordingView()->volume(), 1);
  device_.audioSession().setPeakPower(-90);
  play("recover");
  EXPECT_EQ(height(), 0) << "the bar flashes";
  play("cancel");
  const auto waiting = device_.mainQueue().pendingCount();
  device_.audioSession().setPeakPower(0);
  play("1");
  EXPECT_EQ(RecordManager::shared().recordingView()->volume(), 0) << "the overlay's timer goes on";
  EXPECT_LE(device_.mainQueue().pendingCount(), waiting);
}

}  // namespace
}  // namespace orivex::testing
