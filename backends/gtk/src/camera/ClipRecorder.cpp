#include "ClipRecorder.h"

#include <utility>

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <sys/mman.h>
#include <unistd.h>

#include "../audio/AudioSource.h"
#include "ClipFormat.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Every element between the microphone and the muxer has a name that begins with this word or is inside one that has,
// which tells its errors from others.
constexpr std::string_view soundMark = ":sound";
constexpr const char* microphoneName = "sound-source";
constexpr const char* soundQueue = "sound-queue";

// Seconds within which an encoder has to complete a file: it has to write what it holds, a few megabytes at most.
constexpr double longestFinish = 8;

// Pictures that the encoder has no time for are dropped before they fill the memory.
std::string describe(const ClipFormat& format, bool withSound) {
  auto text = "appsrc name=pictures is-live=true format=time max-buffers=12 max-bytes=0 leaky-type=upstream ! " +
              format.video + " ! h264parse ! queue ! " + format.muxer +
              " name=mux faststart=true ! filesink name=file ";
  if (withSound) {
    text += std::string("queue name=") + soundQueue +
            " max-size-time=3000000000 ! audioconvert name=sound-convert ! audioresample name=sound-resample ! "
            "audio/x-raw,rate=48000,channels=1 ! " +
            format.sound + " name=sound-encode ! queue ! mux.";
  }
  return text;
}

/// Puts the camera's frames into a recording, from the first that comes to the last that still fits.
class ClipInput {
 public:
  /// `pictures` is the recording's appsrc, `base` the time at which the recording's clock stood at 0, `longest` the
  /// clip's greatest length. `began` is called with the first frame, on the camera's thread.
  ClipInput(GRef<GstElement> pictures, GstClockTime base, GstClockTime longest, std::function<void()> began)
      : pictures_(std::move(pictures)), base_(base), longest_(longest), began_(std::move(began)) {}

  /// A frame and when it was taken.
  void push(GstSample& frame, GstClockTime time) {
    if (!GST_CLOCK_TIME_IS_VALID(time) || time < base_) return;  // taken before the recording began
    const bool isFirst = !GST_CLOCK_TIME_IS_VALID(first_);
    if (isFirst) first_ = time;
    if (time - first_ >= longest_) return;

    auto* const pictures = GST_APP_SRC(pictures_.get());
    if (isFirst) gst_app_src_set_caps(pictures, gst_sample_get_caps(&frame));
    auto* const buffer = gst_buffer_copy(gst_sample_get_buffer(&frame));  // shares the pixels
    GST_BUFFER_PTS(buffer) = time - base_;
    GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
    gst_app_src_push_buffer(pictures, buffer);
    if (isFirst) began_();
  }

 private:
  const GRef<GstElement> pictures_;
  const GstClockTime base_;
  const GstClockTime longest_;
  const std::function<void()> began_;
  GstClockTime first_ = GST_CLOCK_TIME_NONE;
};

/// A file in memory that nobody else finds.
class ScratchFile {
 public:
  ScratchFile() : descriptor_(memfd_create("orivex-scratch", MFD_CLOEXEC)) {}
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    if (*this) close(descriptor_);
  }

  explicit operator bool() const { return descriptor_ >= 0; }

  /// Opens it, for this process alone and whatever happens to the folders meanwhile.
  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  const int descriptor_;
};

// The muxer moves the index before the pictures and keeps them in a draft until then. GStreamer's waits for itself for
// ever when it cannot open its draft, so that is one which always opens.
struct ClipFiles {
  std::shared_ptr<CaptureFile> clip;
  ScratchFile draft;
};

// The microphone that voice messages use, ready; null when it does not open.
GRef<GstElement> openMicrophone() {
  const auto made = makeSourceBin(audioSource());
  if (const auto* const source = std::get_if<GRef<GstElement>>(&made)) {
    gst_object_set_name(GST_OBJECT(source->get()), microphoneName);
    if (gst_element_set_state(source->get(), GST_STATE_READY) != GST_STATE_CHANGE_FAILURE) return *source;
    gst_element_set_state(source->get(), GST_STATE_NULL);
  }
  log::print("camera: the microphone does not open");
  return nullptr;
}

ElementOrError build(VideoExportType type, bool withSound, const ClipFiles& files) {
  const auto format = chooseClipFormat(type);
  if (!format) return pipelineError("no H.264 encoder is installed");
  const auto microphone = withSound && !format->sound.empty() ? openMicrophone() : nullptr;
  log::print("camera: records " + format->video + (microphone ? ", " + format->sound : ", silent"));

  auto parsed = parsePipeline(describe(*format, static_cast<bool>(microphone)));
  if (std::holds_alternative<PipelineError>(parsed)) return parsed;
  auto& pipeline = *std::get<GRef<GstElement>>(parsed).get();
  if (microphone) {
    gst_bin_add(GST_BIN(&pipeline), microphone.get());
    gst_element_link(microphone.get(), elementIn(pipeline, soundQueue).get());
  }
  g_object_set(elementIn(pipeline, "file").get(), "location", files.clip->path().c_str(), nullptr);
  g_object_set(elementIn(pipeline, "mux").get(), "faststart-file", files.draft.path().c_str(), nullptr);
  const auto clock = GRef<GstClock>::adopt(gst_system_clock_obtain());
  gst_pipeline_use_clock(GST_PIPELINE(&pipeline), clock.get());
  return parsed;
}

void endStreams(GstElement& pipeline) {
  gst_app_src_end_of_stream(GST_APP_SRC(elementIn(pipeline, "pictures").get()));
  if (const auto microphone = elementIn(pipeline, microphoneName)) {
    gst_element_send_event(microphone.get(), gst_event_new_eos());
  }
}

}  // namespace

ClipRecorder::ClipRecorder(PipelineThreads threads, std::shared_ptr<FrameTap> frames, const CameraOptions& options,
                           bool withSound, Handlers handlers)
    : threads_(threads),
      frames_(std::move(frames)),
      type_(options.videoExportType),
      longest_(options.maxRecordDuration),
      handlers_(std::move(handlers)) {
  start(withSound);
}

ClipRecorder::~ClipRecorder() {
  pipeline_.reset();
  // On the worker, which may be connecting the frames at this moment.
  threads_.worker.run([frames = frames_] { frames->setReceiver(nullptr); });
}

void ClipRecorder::warmUp(PipelineThreads threads, VideoExportType type) {
  threads.worker.run([type] {
    const auto format = chooseClipFormat(type);
    if (!format) return;
    // Plug-ins stay loaded once an element of theirs was made.
    const auto video = GRef<GstElement>::sink(gst_parse_launch(describe(*format, false).c_str(), nullptr));
    if (format->sound.empty()) return;
    const auto sound = GRef<GstElement>::sink(gst_parse_launch(format->sound.c_str(), nullptr));
  });
}

void ClipRecorder::start(bool withSound) {
  withSound_ = withSound;
  pipeline_.reset();
  auto files = std::make_shared<ClipFiles>();
  auto made = CaptureFile::make("video", type_ == VideoExportType::mp4 ? ".mp4" : ".mov");
  if (auto* const failure = std::get_if<Failure>(&made); failure || !files->draft) {
    threads_.main.async(alive_.guard([this, reason = failure ? failure->description : "no memory"] { fail(reason); }));
    return;
  }
  file_ = files->clip = std::get<std::shared_ptr<CaptureFile>>(std::move(made));
  pipeline_ = std::make_unique<Pipeline>(
      threads_, [type = type_, withSound, files] { return build(type, withSound, *files); },
      Pipeline::Handlers{.ended = [this] { ended(); },
                         .failed = [this](const PipelineError& error) { pipelineFailed(error); }},
      files);
  connectFrames();
}

void ClipRecorder::connectFrames() {
  const auto longest = static_cast<GstClockTime>(longest_ * static_cast<double>(GST_SECOND));
  const std::function<void()> began = alive_.guard([this] {
    if (!finishing_) handlers_.began();
  });
  pipeline_->run([frames = frames_, longest, began, &main = threads_.main](GstElement& pipeline) {
    const auto input =
        std::make_shared<ClipInput>(elementIn(pipeline, "pictures"), gst_element_get_base_time(&pipeline), longest,
                                    [began, &main] { main.async([began] { began(); }); });
    frames->setReceiver([input](GstSample& frame, GstClockTime time) { input->push(frame, time); });
  });
}

void ClipRecorder::finish() {
  if (std::exchange(finishing_, true) || !pipeline_) return;
  // After the frames were connected, should that still be to come.
  pipeline_->run([frames = frames_](GstElement& pipeline) {
    frames->setReceiver(nullptr);
    endStreams(pipeline);
  });
  threads_.main.asyncAfter(longestFinish, alive_.guard([this] { fail("the video cannot be completed"); }));
}

void ClipRecorder::ended() {
  if (!g_file_test(file_->path().c_str(), G_FILE_TEST_EXISTS)) return fail("its file was deleted");
  const auto finished = handlers_.finished;
  finished(std::move(file_));
}

// A microphone that is there and gives no sound, as when all are muted by a switch, must not cost the video.
void ClipRecorder::pipelineFailed(const PipelineError& error) {
  if (withSound_ && !finishing_ && error.origin.find(soundMark) != std::string::npos) {
    log::print("camera: the microphone does not work: " + error.text);
    start(false);
  } else {
    fail(error.text);
  }
}

void ClipRecorder::fail(const std::string& reason) {
  log::print("camera: no video: " + reason);
  const auto failed = handlers_.failed;
  failed();
}

}  // namespace orivex::gtk
