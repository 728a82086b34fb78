#include <gst/gst.h>
#include <gtest/gtest.h>

#include "av/FrameFeed.h"
#include "av/Pipeline.h"
#include "camera/CameraPipeline.h"
#include "camera/CameraSource.h"

namespace orivex::gtk {
namespace {

TEST(CameraErrors, TellWhyACameraCannotBeUsed) {
  prepareGStreamer();
  const struct {
    GQuark domain;
    int code;
    CameraFailure failure;
  } cases[] = {
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_FOUND, CameraFailure::noCamera},
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_BUSY, CameraFailure::busy},
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_AUTHORIZED, CameraFailure::accessDenied},
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_OPEN_READ_WRITE, CameraFailure::accessDenied},
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_OPEN_READ, CameraFailure::accessDenied},
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_READ, CameraFailure::failed},
      {GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_SETTINGS, CameraFailure::failed},
      // The numbers of other domains mean other things.
      {GST_STREAM_ERROR, GST_RESOURCE_ERROR_NOT_FOUND, CameraFailure::failed},
      {GST_CORE_ERROR, GST_RESOURCE_ERROR_BUSY, CameraFailure::failed},
  };
  for (const auto& [domain, code, failure] : cases) {
    EXPECT_EQ(failureOf({domain, code, "", ""}), failure) << g_quark_to_string(domain) << " " << code;
  }
}

TEST(CaptureFormats, AreTheNearestInSizeThenTheFastestThenRaw) {
  prepareGStreamer();
  const struct {
    const char* offered;
    const char* best;
  } cases[] = {
      {"video/x-raw,format=YUY2,width={640,1280},height={480,720},framerate={15/1,30/1}",
       "video/x-raw,format=YUY2,width=1280,height=720,framerate=30/1"},
      // What the bus can carry raw at this size is slow; compressed it is fast.
      {"video/x-raw,format=YUY2,width=1280,height=720,framerate=10/1;"
       "image/jpeg,width=1280,height=720,framerate=30/1",
       "image/jpeg,width=1280,height=720,framerate=30/1"},
      {"image/jpeg,width=1280,height=720,framerate=60/1;"
       "video/x-raw,format=NV12,width=1280,height=720,framerate=30/1",
       "video/x-raw,format=NV12,width=1280,height=720,framerate=30/1"},
      {"video/x-raw,format=YUY2,width=640,height=480,framerate=30/1;"
       "video/x-raw,format=YUY2,width=1920,height=1080,framerate=1/1",
       "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1"},
      {"video/x-raw,format=I420,width=[16,1920],height=[16,1080],framerate=[1/1,120/1]",
       "video/x-raw,format=I420,width=1280,height=720,framerate=30/1"},
      {"video/x-h264,width=1280,height=720,framerate=30/1;"
       "video/x-raw(memory:DMABuf),format=NV12,width=1280,height=720,framerate=30/1",
       nullptr},
  };
  for (const auto& [offered, best] : cases) {
    const GstCapsPtr offer(gst_caps_from_string(offered));
    const auto chosen = bestFormat(*offer, {1280, 720});
    if (!best) {
      EXPECT_FALSE(chosen) << offered;
      continue;
    }
    const GstCapsPtr expected(gst_caps_from_string(best));
    ASSERT_TRUE(chosen) << offered;
    EXPECT_TRUE(gst_caps_is_equal(chosen.get(), expected.get())) << gst_caps_to_string(chosen.get());
  }
}

TEST(CameraFacings, ComeFromTheDriverThenFromTheName) {
  EXPECT_EQ(facingOf("back", "Front Camera"), CameraFacing::back);
  EXPECT_EQ(facingOf("front", "Rear Camera"), CameraFacing::front);
  EXPECT_EQ(facingOf("", "OV5640 Rear"), CameraFacing::back);
  EXPECT_EQ(facingOf("", "Integrated Webcam"), CameraFacing::front);
}

TEST(PlacedSizes, FillTheAreaUnlessTooMuchWouldBeCutOff) {
  const struct {
    Size frame;
    Size area;
    Size placed;
  } cases[] = {
      {{1280, 720}, {1280, 720}, {1280, 720}}, {{1280, 720}, {640, 400}, {711, 400}},  // fills
      {{720, 1280}, {360, 720}, {405, 720}},                                           // fills
      {{1280, 720}, {360, 720}, {360, 203}},                                           // as a whole
      {{640, 480}, {1280, 720}, {1280, 960}},                                          // a third more, just so
      {{720, 1280}, {1280, 720}, {405, 720}},                                          // as a whole
  };
  for (const auto& [frame, area, placed] : cases) {
    EXPECT_EQ(placedSize(frame, area), placed) << frame.width << "x" << frame.height << " in " << area.width;
  }
}

}  // namespace
}  // namespace orivex::gtk
