#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "SoundServer.h"
#include "audio/GstAudioPlayer.h"
#include "audio/WavFile.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include "orivex/platform/base/Url.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 20;

TEST(GstAudioPlayerTest, PlaysAClipToItsEndAsOftenAsAsked) {
  const LogLines log;
  const TemporaryFolder folder;
  const SoundServer server;
  GlibMainQueue queue;
  WorkerPool workers(4, std::chrono::seconds(1));
  const std::string path = folder.path() / "语音 1.wav";
  std::get<WavFile>(WavFile::create(path, {})).append(std::vector<std::byte>(16000));
  GstAudioPlayer player({queue, workers}, Url::fromFilePath(path).absoluteString());
  for (int round = 0; round < 2; ++round) {
    const auto begin = g_get_monotonic_time();
    ASSERT_TRUE(player.play());
    EXPECT_TRUE(player.isPlaying());
    EXPECT_TRUE(wait([&] { return !player.isPlaying(); }, patience));
    EXPECT_GE(g_get_monotonic_time() - begin, G_USEC_PER_SEC / 2) << "half a second of sound was over sooner";
  }
  EXPECT_TRUE(log.get().empty());
}

TEST(GstAudioPlayerTest, EndsWithOneLineWithoutAFile) {
  const LogLines log;
  const TemporaryFolder folder;
  const SoundServer server;
  GlibMainQueue queue;
  WorkerPool workers(4, std::chrono::seconds(1));
  GstAudioPlayer lost({queue, workers}, Url::fromFilePath((folder.path() / "lost.wav").string()).absoluteString());
  EXPECT_TRUE(lost.play());
  EXPECT_TRUE(wait([&] { return !lost.isPlaying() && log.get().size() == 1; }, patience));
  lost.stop();
  EXPECT_EQ(log.get().size(), 1U);
}

}  // namespace
}  // namespace orivex::gtk
