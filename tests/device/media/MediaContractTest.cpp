#include <thread>

#include <gtest/gtest.h>

#include "PlainJpeg.h"
#include "av/GstMediaProbe.h"
#include "contract/MediaContract.h"
#include "pictures/PictureCodec.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {

/// Real files for the real ports.
class MediaFixture {
 public:
  const ImageCodec& imageCodec() const { return codec_; }
  const MediaProbe& mediaProbe() const { return probe_; }
  void runOnWorker(Task task) {
    std::thread([&] { std::move(task)(); }).join();
  }
  std::string picture() { return folder_.write("picture.jpg", encodePlainJpeg(quarters(64, 48))); }
  std::string video() {
    const auto path = folder_.path() / "video.mp4";
    writeMedia(path, testVideo());
    return path;
  }
  std::string text() { return folder_.write("text.txt", "Dear diary"); }

 private:
  TemporaryFolder folder_;
  TestDecoder decoder_;
  PictureCodec codec_{decoder_};
  GstMediaProbe probe_{decoder_};
};

}  // namespace orivex::gtk

namespace orivex::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, MediaContract, gtk::MediaFixture);

}  // namespace orivex::contract
