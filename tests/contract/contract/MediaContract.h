#pragma once

#include <concepts>
#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/MediaReading.h"

/// The ports that look into pictures and videos: ImageCodec and MediaProbe.
namespace orivex::contract {

/// Files that these ports can read, and one that they cannot.
template <class Fixture>
concept MediaFixture = std::default_initializable<Fixture> && requires(Fixture fixture, Task task) {
  { fixture.imageCodec() } -> std::convertible_to<const ImageCodec&>;
  { fixture.mediaProbe() } -> std::convertible_to<const MediaProbe&>;
  /// Runs `task` on another thread than the main thread and waits for its end.
  fixture.runOnWorker(std::move(task));
  /// Path of a picture of 64 x 48 pixels.
  { fixture.picture() } -> std::same_as<std::string>;
  /// Path of a video of 320 x 240 pixels and two seconds.
  { fixture.video() } -> std::same_as<std::string>;
  /// Path of a text.
  { fixture.text() } -> std::same_as<std::string>;
};

template <MediaFixture Fixture>
class MediaContract : public ::testing::Test {
 protected:
  Fixture fixture_;
};
TYPED_TEST_SUITE_P(MediaContract);

TYPED_TEST_P(MediaContract, APictureBecomesAJpegOfItsSizeOnAnyThread) {
  const auto path = this->fixture_.picture();
  const ImageCodec& codec = this->fixture_.imageCodec();
  std::variant<JpegImage, Failure> fromWorker;
  this->fixture_.runOnWorker([&] { fromWorker = codec.jpeg(path, 0.7); });
  for (const auto& result : {codec.jpeg(path, 0.7), fromWorker}) {
    ASSERT_TRUE(std::holds_alternative<JpegImage>(result));
    EXPECT_EQ(std::get<JpegImage>(result).size, (Size{64, 48}));
    EXPECT_TRUE(std::get<JpegImage>(result).bytes.starts_with("\xFF\xD8"));
  }
}

TYPED_TEST_P(MediaContract, AVideoIsMeasuredAndItsFirstFrameIsAJpeg) {
  const auto path = this->fixture_.video();
  std::variant<VideoFacts, Failure> result;
  this->fixture_.runOnWorker([&] { result = this->fixture_.mediaProbe().probeVideo(path); });
  ASSERT_TRUE(std::holds_alternative<VideoFacts>(result));
  const auto& facts = std::get<VideoFacts>(result);
  EXPECT_NEAR(facts.duration, 2, 0.1);
  EXPECT_EQ(facts.size, (Size{320, 240}));
  EXPECT_TRUE(facts.firstFrameJpeg.starts_with("\xFF\xD8"));
}

TYPED_TEST_P(MediaContract, ATextIsAFailureThatNamesIt) {
  const auto path = this->fixture_.text();
  const auto picture = this->fixture_.imageCodec().jpeg(path, 0.7);
  ASSERT_TRUE(std::holds_alternative<Failure>(picture));
  EXPECT_NE(std::get<Failure>(picture).description.find(path), std::string::npos);
  std::variant<VideoFacts, Failure> video;
  this->fixture_.runOnWorker([&] { video = this->fixture_.mediaProbe().probeVideo(path); });
  ASSERT_TRUE(std::holds_alternative<Failure>(video));
  EXPECT_NE(std::get<Failure>(video).description.find(path), std::string::npos);
}

REGISTER_TYPED_TEST_SUITE_P(MediaContract, APictureBecomesAJpegOfItsSizeOnAnyThread,
                            AVideoIsMeasuredAndItsFirstFrameIsAJpeg, ATextIsAFailureThatNamesIt);

}  // namespace orivex::contract
