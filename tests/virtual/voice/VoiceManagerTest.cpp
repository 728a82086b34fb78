#include <cmath>
#include <regex>

#include "VoiceTest.h"

namespace orivex::testing {
namespace {

class VoiceManagerTest : public DeviceTest {
 protected:
  VoiceManagerTest() { voice_.isRecordingAllowed = true; }

  VirtualAudioSession::Recording& last() { return *device_.audioSession().recordings().back(); }
  static std::string pathOf(const VoiceManager& voice) { return voice.recorder_file_path->absoluteString(); }

  VoiceManager voice_;
};

TEST_F(VoiceManagerTest, WithoutPermissionDoesNothingAtAll) {
  voice_.isRecordingAllowed = false;
  voice_.duration = 3000;
  voice_.startRecording();
  EXPECT_EQ(voice_.duration, 3000);
  EXPECT_FALSE(voice_.recorder_file_path);
  EXPECT_FALSE(voice_.timer);
  EXPECT_FALSE(device_.audioSession().category());
  EXPECT_EQ(log_.take(), Lines{});
}

TEST_F(VoiceManagerTest, RecordsSixteenKilohertzMonoIntoANewFile) {
  voice_.startRecording();
  EXPECT_EQ(device_.audioSession().category(), AudioSessionCategory::playAndRecord);
  EXPECT_TRUE(device_.audioSession().isActive());
  EXPECT_TRUE(last().metering);
  EXPECT_TRUE(last().recording);
  EXPECT_EQ(last().settings, (AudioSettings{{"AVSampleRateKey", std::int64_t{16000}},
                                            {"AVFormatIDKey", std::uint32_t{1819304813}},
                                            {"AVLinearPCMBitDepthKey", std::int64_t{16}},
                                            {"AVNumberOfChannelsKey", std::int64_t{1}},
                                            {"AVEncoderAudioQualityKey", std::int64_t{0}}}));
  const std::regex place("/virtual/Documents/[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.wav");
  EXPECT_TRUE(std::regex_match(last().path, place)) << last().path;
  EXPECT_EQ(pathOf(voice_), "file://" + last().path);
  const auto first = last().path;
  voice_.stopRecording();
  voice_.startRecording();
  EXPECT_NE(last().path, first);
  EXPECT_TRUE(device_.fileManager().removed().empty());
}

TEST_F(VoiceManagerTest, CountsWholeSecondsOfTheClipAlone) {
  const std::pair<double, double> cases[] = {{0.9, 0}, {1.5, 1000}, {2.7, 2000}, {3, 3000}};
  for (const auto& [seconds, duration] : cases) {
    voice_.startRecording();
    device_.advance(seconds);
    voice_.stopRecording();
    device_.advance(5);
    EXPECT_EQ(voice_.duration, duration) << seconds;
  }
  voice_.startRecording();
  device_.advance(0.7);
  voice_.startRecording();
  device_.advance(0.9);
  EXPECT_EQ(voice_.duration, 0) << "the first clip's timer still counts";
  EXPECT_EQ(device_.audioSession().recordings()[4]->destroyed, true);
}

TEST_F(VoiceManagerTest, SaysHowItStopped) {
  voice_.startRecording();
  voice_.stopRecording();
  EXPECT_EQ(log_.take(), Lines{"执行结束录音，文件保存路径：" + pathOf(voice_)});
  const auto path = pathOf(voice_);
  voice_.stopRecording();
  EXPECT_EQ(log_.take(), Lines{"没有初始化"});
  EXPECT_EQ(pathOf(voice_), path);
  voice_.startRecording();
  device_.audioSession().interrupt();
  voice_.stopRecording();
  EXPECT_EQ(log_.take(), Lines{"执行结束录音，无录音文件"});
  EXPECT_TRUE(last().destroyed);
}

TEST_F(VoiceManagerTest, GoesOnWhereItCanAndLogsEachFailure) {
  device_.audioSession().failCategory("no category");
  device_.audioSession().failActivation("no activation");
  voice_.startRecording();
  EXPECT_EQ(log_.take(), (Lines{"设置类型失败:no category", "初始化动作失败:no activation"}));
  EXPECT_TRUE(last().recording);
  device_.audioSession().failCategory("");
  device_.audioSession().failActivation("");
  device_.audioSession().failRecorders("no microphone");
  const auto* const before = voice_.recorder.get();
  voice_.startRecording();
  EXPECT_EQ(log_.take(), Lines{"录音失败:no microphone"});
  EXPECT_EQ(voice_.recorder.get(), before);
  EXPECT_FALSE(voice_.timer);
  device_.advance(5);
  EXPECT_EQ(voice_.duration, 0);
  device_.fileManager().failRemoval("no such file");
  voice_.deleteRecordingFile();
  EXPECT_EQ(log_.take(), Lines{"删除录音:no such file"});
  device_.fileManager().failRemoval("");
  voice_.deleteRecordingFile();
  EXPECT_EQ(log_.take(), Lines{});
  EXPECT_EQ(device_.fileManager().removed().size(), 1U);
}

TEST_F(VoiceManagerTest, StopsTheProcessWithoutADocumentsFolder) {
  device_.fileManager().setDocumentDirectory(std::nullopt);
  EXPECT_DEATH(voice_.startRecording(), "VoiceManager.*documents");
}

// What the formula gives in single precision, worked out by itself.
TEST_F(VoiceManagerTest, MapsTheLevelToTheBar) {
  EXPECT_EQ(voice_.currentVolumeLevel(), 0);
  voice_.startRecording();
  const std::pair<float, float> cases[] = {
      {-90, 0},
      {-80.01F, 0},
      {-80, 0},
      {3, 1},
      {-40, 0.0995037183F},
      {-12.5F, 0.486889184F},
      {-1, 0.94405508F},
      {-0.0001F, 0.999994218F},
  };
  for (const auto& [power, level] : cases) {
    device_.audioSession().setPeakPower(power);
    EXPECT_FLOAT_EQ(voice_.currentVolumeLevel(), level) << power;
  }
  device_.audioSession().setPeakPower(0);
  device_.audioSession().interrupt();
  EXPECT_EQ(voice_.currentVolumeLevel(), 0);
  voice_.stopRecording();
  EXPECT_EQ(voice_.currentVolumeLevel(), 0);
}

TEST_F(VoiceManagerTest, TakesThePermissionOnTheMainQueue) {
  auto manager = std::make_unique<VoiceManager>();
  std::vector<std::pair<bool, bool>> answers;  // with whether it came on the main thread
  const auto tell = [&](bool allowed) {
    device_.mainQueue().global([&, allowed] {
      manager->setRecordingAllowed(
          allowed, [&](bool answer) { answers.emplace_back(answer, device_.mainQueue().isMainThread()); });
    });
  };
  tell(true);
  EXPECT_FALSE(manager->isRecordingAllowed);
  device_.runUntilIdle();
  EXPECT_TRUE(manager->isRecordingAllowed);
  tell(false);
  device_.runUntilIdle();
  EXPECT_FALSE(manager->isRecordingAllowed);
  manager->setRecordingAllowed(true, [&](bool answer) { answers.emplace_back(answer, true); });
  manager.reset();
  device_.runUntilIdle();
  EXPECT_EQ(answers, (std::vector<std::pair<bool, bool>>{{true, true}, {false, true}, {true, true}}));
}

}  // namespace
}  // namespace orivex::testing
