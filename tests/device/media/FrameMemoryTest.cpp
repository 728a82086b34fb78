#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "av/ClipPlayer.h"
#include "glib/GRef.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

TEST(FrameMemory, OfAVideoIsRefusedBeyondTheLargestFrame) {
  GlibMainQueue queue;
  WorkerPool worker(1, std::chrono::seconds(1));
  const TemporaryFolder folder;
  const auto plays = [&](const char* size) {
    const auto path = folder.path() / "clip.mkv";
    writeMedia(
        path, "videotestsrc num-buffers=1 ! video/x-raw,format=I420," + std::string(size) + " ! jpegenc ! matroskamux");
    bool hasFailed = false;
    bool hasEnded = false;
    const ClipPlayer player({queue, worker}, path.string(), {360, 640},
                            {.show = [](const GRef<GdkTexture>&) {},
                             .ended = [&] { hasEnded = true; },
                             .failed = [&] { hasFailed = true; }});
    EXPECT_TRUE(wait([&] { return hasFailed || hasEnded; }, 20)) << size;
    return hasEnded;
  };
  EXPECT_TRUE(plays("width=6144,height=3456"));
  EXPECT_TRUE(plays("width=3456,height=6144"));
  EXPECT_FALSE(plays("width=6160,height=3456"));
  EXPECT_FALSE(plays("width=5000,height=5000"));
}

}  // namespace
}  // namespace orivex::gtk
