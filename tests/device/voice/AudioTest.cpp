#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "GlibMainQueue.h"
#include "SoundServer.h"
#include "av/GstAudioRecorder.h"
#include "av/GstAudioSession.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

// Seconds after which something that should have happened is taken to hang.
constexpr double patience = 20;

/// A WAV file of 16 bits, 16 kHz and one channel as a player that trusts its header reads it.
struct WavClip {
  /// What a reader sees first that is wrong with the file; empty when nothing is.
  std::string fault;
  std::vector<std::int16_t> samples;

  explicit WavClip(const std::filesystem::path& path) {
    const auto bytes = contentsOf(path);
    if (bytes.size() < 44) {
      fault = "no header";
      return;
    }
    const auto number = [](std::uint32_t value) {
      return std::string(reinterpret_cast<const char*>(&value), sizeof value);
    };
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data() + 40, sizeof size);
    const std::string format = number(16) + std::string("\1\0\1\0", 4) + number(16000) + number(32000);
    const auto expected = "RIFF" + number(size + 36) + "WAVEfmt " + format + std::string("\2\0\x10\0", 4) + "data";
    if (bytes.substr(0, 40) != expected) fault = "another header";
    if (size > bytes.size() - 44 || size % 2 != 0) fault = "more samples in the header than in the file";
    if (!fault.empty()) return;
    samples.resize(size / 2);
    if (size > 0) std::memcpy(samples.data(), bytes.data() + 44, size);
  }

  double seconds() const { return static_cast<double>(samples.size()) / 16000; }

  /// Of a pure tone, in Hz, by its rises through zero.
  double frequency() const {
    std::vector<std::size_t> rises;
    for (std::size_t index = 1; index < samples.size(); ++index) {
      if (samples[index - 1] < 0 && samples[index] >= 0) rises.push_back(index);
    }
    if (rises.size() < 2) return 0;
    return static_cast<double>(rises.size() - 1) * 16000.0 / static_cast<double>(rises.back() - rises.front());
  }

  /// Of the highest sample, in dBFS.
  double peak() const {
    int highest = 0;
    for (const auto sample : samples) highest = std::max(highest, std::abs(static_cast<int>(sample)));
    return 20 * std::log10(highest / 32768.0);
  }
};

class AudioTest : public ::testing::Test {
 protected:
  fs::path place(const std::string& name) const { return folder_.path() / name; }

  std::unique_ptr<GstAudioRecorder> recorder(const std::string& name) {
    auto made = std::make_unique<GstAudioRecorder>(PipelineThreads{queue_, workers_}, place(name), PcmFormat{});
    made->setMeteringEnabled(true);
    return made;
  }

  std::unique_ptr<AudioPlayer> player(const std::string& name) {
    return std::get<0>(session_.makePlayer(Url::fromFilePath(place(name).string())));
  }

  // Whether that much sound gets into the file.
  bool records(const std::string& name, double seconds) const {
    const auto size = static_cast<std::uintmax_t>(seconds * 32000) + 44;
    return wait([&] { return fs::exists(place(name)) && fs::file_size(place(name)) >= size; }, patience);
  }

  bool ends(GstAudioRecorder& recorder) const {
    return wait(
        [&] {
          recorder.updateMeters();
          return !recorder.isRecording() && !log_.get().empty();
        },
        patience);
  }

  // What a player finds in a clip that is no longer written.
  WavClip expectWhole(const std::string& name) const {
    WavClip clip(place(name));
    EXPECT_EQ(clip.fault, "");
    EXPECT_EQ(fs::file_size(place(name)), 44 + clip.samples.size() * 2) << "something behind the samples";
    return clip;
  }

  LogLines log_;
  TemporaryFolder folder_;
  SoundServer server_;
  GlibMainQueue queue_;
  WorkerPool workers_{4, std::chrono::seconds(1)};
  GstAudioSession session_{queue_};
};

TEST_F(AudioTest, WritesWhatTheMicrophoneHears) {
  const auto clip = recorder("a.wav");
  const auto begin = g_get_monotonic_time();
  ASSERT_TRUE(clip->record());
  ASSERT_TRUE(records("a.wav", 1.2));
  clip->updateMeters();
  const double level = clip->peakPower(0);
  clip->updateMeters();
  EXPECT_NEAR(clip->peakPower(0), level, 3) << "asked again before a sample came";
  clip->stop();
  const double elapsed = static_cast<double>(g_get_monotonic_time() - begin) / G_USEC_PER_SEC;

  const auto written = expectWhole("a.wav");
  EXPECT_GE(written.seconds(), 1.2);
  EXPECT_LE(written.seconds(), elapsed + 0.1) << "more sound than time";
  EXPECT_NEAR(written.frequency(), 440, 2);
  EXPECT_NEAR(written.peak(), level, 0.5);
  EXPECT_LT(level, 0.001);
  EXPECT_EQ(fs::status(place("a.wav")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_TRUE(log_.get().empty());
}

TEST_F(AudioTest, EndsWithTheCallAndWithItsOwner) {
  auto first = recorder("first.wav");
  ASSERT_TRUE(first->record());
  ASSERT_TRUE(records("first.wav", 0.2));
  first->stop();
  const auto size = fs::file_size(place("first.wav"));
  auto second = recorder("second.wav");
  ASSERT_TRUE(second->record());
  ASSERT_TRUE(records("second.wav", 0.2));
  second->discard();
  const auto kept = expectWhole("second.wav").samples.size();
  const double heard = second->recordedSeconds();
  EXPECT_TRUE(wait([&] { return second->recordedSeconds() > heard + 0.2; }, patience)) << "the recording has ended";
  EXPECT_EQ(expectWhole("second.wav").samples.size(), kept) << "what was dropped is still written";
  second.reset();
  const auto after = expectWhole("second.wav").samples.size();
  pass(0.3);
  EXPECT_EQ(fs::file_size(place("first.wav")), size);
  EXPECT_EQ(expectWhole("second.wav").samples.size(), after);
  expectWhole("first.wav");
}

TEST_F(AudioTest, CanBeStoppedBeforeItHasReallyStarted) {
  for (int round = 0; round < 20; ++round) {
    const auto name = std::to_string(round) + ".wav";
    const auto clip = recorder(name);
    ASSERT_TRUE(clip->record());
    if (round % 2 == 0) pass(0.002 * round);
    clip->stop();
    EXPECT_FALSE(clip->isRecording());
    expectWhole(name);
  }
  EXPECT_TRUE(log_.get().empty());
}

TEST_F(AudioTest, TakesNoPlaceThatIsNotItsOwn) {
  folder_.write("taken.wav", "a visitor's own");
  EXPECT_FALSE(recorder("taken.wav")->record());
  EXPECT_EQ(fs::file_size(place("taken.wav")), 15U);
  EXPECT_FALSE(recorder("missing/a.wav")->record());
  EXPECT_EQ(log_.get().size(), 2U);
}

TEST_F(AudioTest, KeepsWhatItHasWhenTheServerDiesOrHangsAndFindsTheNextOne) {
  const struct {
    const char* name;
    std::function<void()> happen;
    std::function<void()> mend;
  } faults[] = {
      {"hangs", [this] { server_.freeze(); }, [this] { server_.thaw(); }},
      {"dies", [this] { server_.stop(); }, [this] { server_.start(); }},
  };
  for (const auto& [name, happen, mend] : faults) {
    SCOPED_TRACE(name);
    log_.take();
    const auto clip = recorder(name);
    ASSERT_TRUE(clip->record());
    ASSERT_TRUE(records(name, 0.3));
    happen();
    EXPECT_TRUE(ends(*clip));
    clip->stop();
    EXPECT_GE(expectWhole(name).seconds(), 0.3);
    EXPECT_EQ(log_.take().size(), 1U);

    const auto late = recorder(std::string("late, it ") + name);
    EXPECT_TRUE(late->record());
    EXPECT_TRUE(ends(*late));
    pass(0.2);
    EXPECT_EQ(log_.take().size(), 1U);
    EXPECT_TRUE(expectWhole(std::string("late, it ") + name).samples.empty());
    mend();
  }
  const auto next = recorder("next.wav");
  ASSERT_TRUE(next->record());
  EXPECT_TRUE(records("next.wav", 0.3));
}

TEST_F(AudioTest, OutlivesItsMicrophone) {
  const auto clip = recorder("a.wav");
  ASSERT_TRUE(clip->record());
  ASSERT_TRUE(records("a.wav", 0.3));
  ASSERT_TRUE(server_.control("unload-module module-remap-source"));
  pass(1);
  clip->updateMeters();
  EXPECT_NE(clip->isRecording(), log_.get().size() == 1) << "it goes on with another one, or says that it ended";
  clip->stop();
  EXPECT_GE(expectWhole("a.wav").seconds(), 0.3);
}

TEST_F(AudioTest, KeepsWhatFitsOnAFullDisk) {
  const auto clip = recorder("a.wav");
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  constexpr rlim_t room = 60001;
  const rlimit small{room, limit.rlim_max};
  std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_TRUE(clip->record());
  ASSERT_TRUE(records("a.wav", 0.2));
  ::setrlimit(RLIMIT_FSIZE, &small);
  const bool ended = ends(*clip);
  ::setrlimit(RLIMIT_FSIZE, &limit);
  EXPECT_TRUE(ended);
  EXPECT_EQ(log_.get().size(), 1U);
  clip->stop();
  const WavClip written(place("a.wav"));
  EXPECT_EQ(written.fault, "");
  EXPECT_EQ(written.samples.size(), (room - 44) / 2);
  EXPECT_TRUE(clip->isDiskFull());
}

TEST_F(AudioTest, RecordsFromTheSourceThatIsNamed) {
  const auto name = [](const char* source) { g_setenv("ORIVEX_AUDIO_SOURCE", source, TRUE); };
  name("audiotestsrc is-live=true freq=1000 volume=0.25");
  auto clip = recorder("a.wav");
  ASSERT_TRUE(clip->record());
  ASSERT_TRUE(records("a.wav", 0.5));
  clip->stop();
  EXPECT_NEAR(expectWhole("a.wav").frequency(), 1000, 5);
  EXPECT_NEAR(expectWhole("a.wav").peak(), -12.04, 0.1);

  std::size_t lines = 0;
  for (const auto* broken : {"no-such-element", "audiotestsrc !", "audiotestsrc num-buffers=3"}) {
    name(broken);
    clip = recorder("b" + std::to_string(++lines) + ".wav");
    EXPECT_TRUE(clip->record());
    EXPECT_TRUE(wait([&] { return !clip->isRecording() && log_.get().size() == lines; }, patience)) << broken;
  }
  g_unsetenv("ORIVEX_AUDIO_SOURCE");
}

TEST_F(AudioTest, PlaysAClipToItsEndAsOftenAsAsked) {
  std::get<WavFile>(WavFile::create(place("语音 1.wav"), {})).append(std::vector<std::byte>(16000));
  const auto clip = player("语音 1.wav");
  for (int round = 0; round < 2; ++round) {
    const auto begin = g_get_monotonic_time();
    ASSERT_TRUE(clip->play());
    EXPECT_TRUE(clip->isPlaying());
    EXPECT_TRUE(wait([&] { return !clip->isPlaying(); }, patience));
    EXPECT_GE(g_get_monotonic_time() - begin, G_USEC_PER_SEC / 2) << "half a second of sound was over sooner";
  }
  EXPECT_TRUE(log_.get().empty());
}

TEST_F(AudioTest, PlayingEndsWithOneLineWithoutAFile) {
  const auto lost = player("lost.wav");
  EXPECT_TRUE(lost->play());
  EXPECT_TRUE(wait([&] { return !lost->isPlaying() && log_.get().size() == 1; }, patience));
  lost->stop();
  EXPECT_EQ(log_.get().size(), 1U);
}

// Whichever sound server there is: the device's own microphone hears 440 Hz.
TEST(Microphone, OfTheDeviceIsTheOneThatIsRecorded) {
  const TemporaryFolder folder;
  GlibMainQueue queue;
  WorkerPool workers{1, std::chrono::seconds(1)};
  const auto file = folder.path() / "a.wav";
  GstAudioRecorder recorder({queue, workers}, file, PcmFormat{});
  ASSERT_TRUE(recorder.record());
  ASSERT_TRUE(wait([&] { return recorder.recordedSeconds() > 1; }, patience));
  recorder.stop();
  const WavClip clip(file);
  EXPECT_EQ(clip.fault, "");
  EXPECT_NEAR(clip.frequency(), 440, 2);
}

}  // namespace
}  // namespace orivex::gtk
