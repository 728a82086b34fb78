#include "CameraPipeline.h"

#include <utility>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Seconds after which a camera that has sent nothing is taken to be broken; slow ones need two or three.
constexpr double longestStart = 10;

// The queues hold next to nothing: what comes too late is dropped rather than shown or recorded late.
std::string description() {
  return "capsfilter name=offer ! decodebin ! videoconvert ! video/x-raw,format=I420 ! videoflip name=turn ! tee "
         "name=split split. ! queue max-size-buffers=1 max-size-bytes=0 max-size-time=0 leaky=downstream ! " +
         FrameFeed::branch(false) +
         " split. ! queue max-size-buffers=2 max-size-bytes=0 max-size-time=0 leaky=downstream ! appsink name=frames "
         "max-buffers=2 drop=true sync=false";
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
  if (!gst_element_link(element, offer.get())) return pipelineError("the source has no pictures");
  g_object_set(offer.get(), "caps", formatFor(source, captureSize).get(), nullptr);

  const auto clock = GRef<GstClock>::adopt(gst_system_clock_obtain());
  gst_pipeline_use_clock(GST_PIPELINE(&pipeline), clock.get());
  feed->connect(pipeline, screenArea, source.facing == CameraFacing::front);
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

void CameraPipeline::turn(int degrees) {
  static_assert(GST_VIDEO_ORIENTATION_90R == 1 && GST_VIDEO_ORIENTATION_180 == 2 && GST_VIDEO_ORIENTATION_90L == 3);
  pipeline_->run([quarters = degrees / 90](GstElement& pipeline) {
    g_object_set(elementIn(pipeline, "turn").get(), "video-direction", quarters, nullptr);
  });
}

void CameraPipeline::fail(CameraFailure failure, const std::string& reason) {
  const auto failed = std::exchange(failed_, nullptr);
  if (!failed) return;
  log::warning("camera: " + reason);
  failed(failure);
}

CameraFailure failureOf(const PipelineError& error) {
  if (error.domain != GST_RESOURCE_ERROR) return CameraFailure::failed;
  switch (error.code) {
    case GST_RESOURCE_ERROR_NOT_FOUND:
      return CameraFailure::noCamera;
    case GST_RESOURCE_ERROR_BUSY:
      return CameraFailure::busy;
    // A device file that exists and cannot be opened is one that this user may not open: Video4Linux lets several
    // programs open a camera, and says that it is busy only when the second one asks for frames.
    case GST_RESOURCE_ERROR_NOT_AUTHORIZED:
    case GST_RESOURCE_ERROR_OPEN_READ:
    case GST_RESOURCE_ERROR_OPEN_WRITE:
    case GST_RESOURCE_ERROR_OPEN_READ_WRITE:
      return CameraFailure::accessDenied;
    default:
      return CameraFailure::failed;
  }
}

}  // namespace orivex::gtk
