#include <chrono>

#include <gmock/gmock.h>
#include <gst/gst.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "PictureFiles.h"
#include "PlainJpeg.h"
#include "av/GstMediaProbe.h"
#include "glib/GRef.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class GstMediaProbeTest : public ::testing::Test {
 protected:
  std::filesystem::path media(const std::string& name, const std::string& pipeline) {
    auto path = folder_.path() / name;
    writeMedia(path, pipeline);
    return path;
  }
  VideoFacts facts(const std::filesystem::path& path) {
    auto result = probe_.probeVideo(path);
    const auto* const failure = std::get_if<Failure>(&result);
    if (failure) ADD_FAILURE() << failure->description;
    return failure ? VideoFacts{} : std::get<VideoFacts>(std::move(result));
  }

  TemporaryFolder folder_;
  TestDecoder decoder_;
  GstMediaProbe probe_{decoder_};
};

TEST_F(GstMediaProbeTest, MeasuresAVideoAsItIsSeen) {
  const struct {
    int degrees;
    Size size;
    std::pair<unsigned, unsigned> dark;  // a place that the upper edge of the stored picture takes
  } rows[] = {
      {0, {320, 240}, {160, 8}},
      {90, {240, 320}, {231, 160}},
      {180, {320, 240}, {160, 231}},
      {270, {240, 320}, {8, 160}},
  };
  const auto path = media("video.mp4", testVideo());
  for (const auto& row : rows) {
    turnVideo(path, row.degrees);
    const auto measured = facts(path);
    EXPECT_NEAR(measured.duration, 2, 0.05);
    EXPECT_EQ(measured.size, row.size) << row.degrees;
    ASSERT_FALSE(measured.firstFrameJpeg.empty()) << row.degrees;
    const auto frame = decodePlainJpeg(measured.firstFrameJpeg);
    ASSERT_EQ((Size{double(frame.width), double(frame.height)}), row.size) << row.degrees;
    EXPECT_TRUE(isNear(frame.at(row.dark.first, row.dark.second), {0, 0, 0}, 40)) << row.degrees;
    EXPECT_TRUE(
        isNear(frame.at(frame.width - 1 - row.dark.first, frame.height - 1 - row.dark.second), {255, 255, 255}, 40))
        << row.degrees;
  }
}

TEST_F(GstMediaProbeTest, AVideoWithoutADecoderOnThisDeviceIsTold) {
  const auto path = media("video.mp4", testVideo());
  // A decoder that starts now takes it over.
  setenv("GST_PLUGIN_FEATURE_RANK", "avdec_h264:NONE,openh264dec:NONE,v4l2h264dec:NONE,v4l2slh264dec:NONE", 1);
  const auto result = probe_.probeVideo(path);
  unsetenv("GST_PLUGIN_FEATURE_RANK");
  ASSERT_TRUE(std::holds_alternative<Failure>(result));
  EXPECT_THAT(std::get<Failure>(result).description, HasSubstr("decoder"));
}

TEST_F(GstMediaProbeTest, WhatIsNoVideoIsToldInTime) {
  const auto video = media("video.mp4", testVideo());
  ASSERT_EQ(mkfifo((folder_.path() / "pipe.mp4").c_str(), 0600), 0);
  const std::string whole = contentsOf(video);
  const std::filesystem::path rows[] = {
      folder_.write("text.mp4", "Dear diary, today I went to see the sea."),
      folder_.write("empty.mp4", ""),
      folder_.write("cut.mp4", whole.substr(0, whole.size() / 2)),
      folder_.write("junk.mp4", std::string(100000, '\x47')),
      folder_.write("photo.mp4", encodePlainJpeg(quarters(64, 48))),
      media("sound.mp4", "audiotestsrc num-buffers=50 ! audioconvert ! avenc_aac ! mp4mux"),
      media("sound.wav", "audiotestsrc num-buffers=50 ! wavenc"),
      folder_.path() / "missing.mp4",
      folder_.path() / "pipe.mp4",
      folder_.path(),
  };
  for (const auto& path : rows) {
    const auto started = std::chrono::steady_clock::now();
    const auto result = probe_.probeVideo(path);
    const auto* const failure = std::get_if<Failure>(&result);
    ASSERT_TRUE(failure) << path;
    EXPECT_THAT(failure->description, HasSubstr(path.string()));
    EXPECT_THAT(failure->description, Not(HasSubstr("\n")));
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(11)) << path;
  }
}

}  // namespace
}  // namespace orivex::gtk
