#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "contract/Fixture.h"

#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ui/View.h"

namespace orivex::contract {

/// A microphone that hears something.
template <class Fixture>
concept SoundFixture = DeviceFixture<Fixture> && requires(Fixture fixture, const std::string& name) {
  /// Path of a file that does not exist yet, in a folder that does.
  { fixture.soundPlace(name) } -> std::same_as<std::string>;
  /// From now on somebody speaks.
  fixture.speak();
};

template <SoundFixture Fixture>
class AudioContract : public Suite<Fixture> {
 protected:
  AudioSession& session() { return this->fixture_.platform().audioSession; }

  static AudioSettings speech() {
    return {{"AVSampleRateKey", std::int64_t{16000}},
            {"AVFormatIDKey", std::uint32_t{0x6C70636D}},
            {"AVLinearPCMBitDepthKey", std::int64_t{16}},
            {"AVNumberOfChannelsKey", std::int64_t{1}},
            {"AVEncoderAudioQualityKey", std::int64_t{0}}};
  }

  std::unique_ptr<AudioRecorder> recorder(const std::string& name) {
    auto made = session().makeRecorder(Url::fromFilePath(this->fixture_.soundPlace(name)), speech());
    EXPECT_TRUE(std::holds_alternative<std::unique_ptr<AudioRecorder>>(made));
    return std::get<std::unique_ptr<AudioRecorder>>(std::move(made));
  }
};
TYPED_TEST_SUITE_P(AudioContract);

TYPED_TEST_P(AudioContract, AMeterTellsTheLevelOfWhatIsRecordedAndSilenceOtherwise) {
  this->fixture_.speak();
  const auto recorder = this->recorder("a.wav");
  const auto level = [&] {
    recorder->updateMeters();
    return recorder->peakPower(0);
  };
  EXPECT_EQ(level(), -160.0F) << "before the recording";
  recorder->record();
  EXPECT_FALSE(this->fixture_.wait([&] { return level() > -160.0F; }, moment)) << "without metering";
  recorder->setMeteringEnabled(true);
  EXPECT_TRUE(this->wait([&] { return level() > -40.0F; }));
  EXPECT_LE(recorder->peakPower(0), 0.0F);
  for (const int channel : {-1, 1, 7}) EXPECT_EQ(recorder->peakPower(channel), -160.0F) << channel;
  recorder->stop();
  EXPECT_EQ(level(), -160.0F) << "after the recording";
}

TYPED_TEST_P(AudioContract, CountsTheSoundThatComesKeptOrNot) {
  this->fixture_.speak();
  const auto recorder = this->recorder("a.wav");
  EXPECT_EQ(recorder->recordedSeconds(), 0);
  recorder->record();
  const auto comes = [&](double seconds) { return this->wait([&] { return recorder->recordedSeconds() > seconds; }); };
  EXPECT_TRUE(comes(0.1));
  recorder->discard();
  EXPECT_TRUE(recorder->isRecording());
  EXPECT_TRUE(comes(recorder->recordedSeconds() + 0.1));
  recorder->stop();
  const double whole = recorder->recordedSeconds();
  this->pass(moment);
  EXPECT_EQ(recorder->recordedSeconds(), whole);
  EXPECT_FALSE(recorder->isDiskFull());
}

TYPED_TEST_P(AudioContract, APlayerPlaysUntilItIsStopped) {
  auto made = this->session().makePlayer(Url::fromFilePath(this->fixture_.soundPlace("missing.wav")));
  ASSERT_TRUE(std::holds_alternative<std::unique_ptr<AudioPlayer>>(made));
  const auto& player = std::get<std::unique_ptr<AudioPlayer>>(made);
  EXPECT_FALSE(player->isPlaying());
  EXPECT_TRUE(player->play());
  player->stop();
  EXPECT_FALSE(player->isPlaying());
  player->stop();
  EXPECT_TRUE(std::holds_alternative<Failure>(this->session().makePlayer(*Url::parse("https://a.example/a.wav"))));
}

REGISTER_TYPED_TEST_SUITE_P(AudioContract, AMeterTellsTheLevelOfWhatIsRecordedAndSilenceOtherwise,
                            CountsTheSoundThatComesKeptOrNot, APlayerPlaysUntilItIsStopped);

/// A visitor whose answer to the question for the microphone is known.
template <class Fixture>
concept PermissionFixture = DeviceFixture<Fixture> && requires(Fixture fixture, bool granted) {
  fixture.rememberPermission(granted);
};

template <PermissionFixture Fixture>
class RecordPermissionContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(RecordPermissionContract);

TYPED_TEST_P(RecordPermissionContract, AKnownAnswerComesOnceAndNotInsideTheCall) {
  const auto view = std::make_shared<View>();
  for (const bool granted : {true, false, true}) {
    this->fixture_.rememberPermission(granted);
    // The answer may come on any thread.
    std::atomic<int> answers = 0;
    std::atomic<bool> answer = !granted;
    this->fixture_.platform().recordPermission.request("Shop", *view, [&](bool given) {
      answer = given;
      ++answers;
    });
    EXPECT_EQ(answers, 0);
    EXPECT_TRUE(this->wait([&] { return answers > 0; }));
    this->pass(moment);
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, granted);
  }
}

REGISTER_TYPED_TEST_SUITE_P(RecordPermissionContract, AKnownAnswerComesOnceAndNotInsideTheCall);

}  // namespace orivex::contract
