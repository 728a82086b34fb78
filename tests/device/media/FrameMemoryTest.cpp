#include <cerrno>
#include <chrono>
#include <memory>

#include <gst/app/app.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "FreeWith.h"
#include "GlibMainQueue.h"
#include "av/ClipPlayer.h"
#include "av/Pipeline.h"
#include "glib/GRef.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

// The page in which the pixels of the first frame lay, once nobody holds the frame any more.
void* pageOfFirstFrame(const std::string& source) {
  const auto pipeline =
      GRef<GstElement>::sink(gst_parse_launch((source + " ! tee ! queue ! appsink name=frames").c_str(), nullptr));
  gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
  const auto sink = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(pipeline.get()), "frames"));
  std::unique_ptr<GstSample, FreeWith<gst_sample_unref>> frame(
      gst_app_sink_try_pull_sample(GST_APP_SINK(sink.get()), 20 * GST_SECOND));
  gst_element_set_state(pipeline.get(), GST_STATE_NULL);
  if (!frame) return nullptr;
  GstMapInfo pixels;
  auto* const buffer = gst_sample_get_buffer(frame.get());
  if (!gst_buffer_map(buffer, &pixels, GST_MAP_READ)) return nullptr;
  gst_buffer_unmap(buffer, &pixels);
  const auto beyond = reinterpret_cast<std::uintptr_t>(pixels.data) % static_cast<std::uintptr_t>(getpagesize());
  return pixels.data - beyond;
}

TEST(FrameMemory, GoesBackToTheSystemWhicheverElementMadeTheFrame) {
  prepareGStreamer();
  const TemporaryFolder folder;
  const auto clip = folder.path() / "clip.avi";
  writeMedia(clip, "videotestsrc num-buffers=8 ! video/x-raw,format=I420,width=1280,height=720 ! jpegenc ! avimux");
  const std::string camera = "videotestsrc num-buffers=8 ! video/x-raw,format=I420,width=1280,height=720";
  for (const auto& source :
       {camera, "filesrc location=" + clip.string() + " ! decodebin",
        camera + " ! videoconvert ! video/x-raw,format=BGRx", camera + " ! videoflip method=clockwise",
        camera + " ! videoscale ! video/x-raw,width=640,height=360"}) {
    SCOPED_TRACE(source);
    // After the first time the C library takes blocks of this size from what it keeps.
    pageOfFirstFrame(source);
    auto* const page = pageOfFirstFrame(source);
    ASSERT_TRUE(page);
// The sanitizers have an allocator of their own.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_EQ(msync(page, 1, MS_ASYNC), -1) << "the page is still there";
    EXPECT_EQ(errno, ENOMEM);
#endif
  }
}

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
