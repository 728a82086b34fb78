#include <gtest/gtest.h>

#include "contract/MediaContract.h"

#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

/// Files that are only named.
class VirtualMediaFixture {
 public:
  const ImageCodec& imageCodec() { return device_.imageCodec(); }
  const MediaProbe& mediaProbe() { return device_.mediaProbe(); }
  void runOnWorker(Task task) {
    device_.mainQueue().global(std::move(task));
    device_.runUntilIdle();
  }
  std::string picture() {
    device_.imageCodec().put("/files/picture.png", {jpeg_, {64, 48}});
    return "/files/picture.png";
  }
  std::string video() {
    device_.mediaProbe().put("/files/video.mp4", {2, {320, 240}, jpeg_});
    return "/files/video.mp4";
  }
  std::string text() { return "/files/text.txt"; }

 private:
  const std::string jpeg_ = "\xFF\xD8 and so on";
  VirtualDevice device_;
};

}  // namespace orivex::testing

namespace orivex::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, MediaContract, testing::VirtualMediaFixture);

}  // namespace orivex::contract
