#include "CameraPipeline.h"

#include <string>
#include <utility>

#include <gst/gst.h>
#include <gst/video/video.h>

#include "../glib/GMemory.h"
#include "../video/PreviewBranch.h"
#include "SourceFailure.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Seconds after which a camera that has sent nothing is given up; slow ones need two or three.
constexpr double longestStart = 10;

// The queues hold next to nothing: what comes too late is dropped rather than shown or recorded late.
std::string description() {
  return "capsfilter name=offer ! decodebin ! videoconvert ! video/x-raw,format=I420 ! videoflip name=turn ! tee "
         "name=split split. ! queue max-size-buffers=1 max-size-bytes=0 max-size-time=0 leaky=downstream ! " +
         previewBranch(false) +
         " split. ! queue max-size-buffers=2 max-size-bytes=0 max-size-time=0 leaky=downstream ! appsink name=frames "
         "max-buffers=2 drop=true sync=false";
}

GstVideoOrientationMethod turnMethod(int degrees) {
  switch (degrees) {
    case 90:
      return GST_VIDEO_ORIENTATION_90R;
    case 180:
      return GST_VIDEO_ORIENTATION_180;
    case 270:
      return GST_VIDEO_ORIENTATION_90L;
    default:
      return GST_VIDEO_ORIENTATION_IDENTITY;
  }
}

// When the frame was taken, on the clock that all our pipelines share.
GstClockTime timeOf(GstElement& pipeline, GstSample& sample) {
  const auto position = gst_segment_to_running_time(gst_sample_get_segment(&sample), GST_FORMAT_TIME,
                                                    GST_BUFFER_PTS(gst_sample_get_buffer(&sample)));
  const auto base = gst_element_get_base_time(&pipeline);
  return GST_CLOCK_TIME_IS_VALID(position) ? base + position : GST_CLOCK_TIME_NONE;
}

ElementOrError build(const CameraSource& source, Size captureSize, Size screenArea,
                     const std::shared_ptr<FrameFeed>& feed, const std::shared_ptr<FrameTap>& frames) {
  auto made = makeSource(source);
  if (std::holds_alternative<PipelineError>(made)) return made;
  auto parsed = parsePipeline(description());
  if (std::holds_alternative<PipelineError>(parsed)) return parsed;
  auto& pipeline = *std::get<GRef<GstElement>>(parsed).get();

  auto* const element = std::get<GRef<GstElement>>(made).get();
  gst_bin_add(GST_BIN(&pipeline), element);
  const auto offer = elementIn(pipeline, "offer");
  if (!gst_element_link(element, offer.get())) return pipelineError("the source gives no pictures");
  g_object_set(offer.get(), "caps", formatFor(source, captureSize).get(), nullptr);

  const auto clock = GRef<GstClock>::adopt(gst_system_clock_obtain());
  gst_pipeline_use_clock(GST_PIPELINE(&pipeline), clock.get());
  connectPreview(pipeline, screenArea, source.facing == CameraFacing::front, feed);
  // The pipeline owns the handler and outlives it.
  handleSamples(*elementIn(pipeline, "frames").get(), [frames, &pipeline](SharedSample sample) {
    const auto time = timeOf(pipeline, *sample);
    frames->push(std::move(sample), time);
  });
  return parsed;
}

}  // namespace

CameraPipeline::CameraPipeline(PipelineThreads threads, const CameraSource& source, Size captureSize, Size screenArea,
                               Handlers handlers)
    : failed_(std::move(handlers.failed)) {
  feed_ = std::make_shared<FrameFeed>(threads.main, [this, show = std::move(handlers.show)](GRef<GdkTexture> frame) {
    shows_ = true;
    show(std::move(frame));
  });
  pipeline_ = std::make_unique<Pipeline>(
      threads,
      [source, captureSize, screenArea, feed = feed_, frames = frames_] {
        return build(source, captureSize, screenArea, feed, frames);
      },
      Pipeline::Handlers{
          .ended = [this] { fail(CameraFailure::failed, "it has sent its last picture"); },
          // What was there a moment ago is neither absent nor somebody else's: it was unplugged or broke.
          .failed =
              [this](const PipelineError& error) {
                fail(shows_ ? CameraFailure::failed : failureOf(error), error.text);
              }});
  threads.main.asyncAfter(longestStart, alive_.guard([this] {
    if (!shows_) fail(CameraFailure::failed, "it sends no pictures");
  }));
}

CameraPipeline::~CameraPipeline() {
  feed_->close();
}

void CameraPipeline::turn(int degrees) {
  pipeline_->run([degrees](GstElement& pipeline) {
    g_object_set(elementIn(pipeline, "turn").get(), "video-direction", turnMethod(degrees), nullptr);
  });
}

void CameraPipeline::fail(CameraFailure failure, const std::string& reason) {
  const auto failed = std::exchange(failed_, nullptr);
  if (!failed) return;
  log::print("camera: " + reason);
  failed(failure);
}

}  // namespace orivex::gtk
