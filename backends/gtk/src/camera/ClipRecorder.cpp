#include "ClipRecorder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <gst/app/gstappsrc.h>
#include <sys/mman.h>

#include "../av/GstAudioRecorder.h"
#include "../pictures/RegularFile.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Every element between the microphone and the muxer has a name that begins with this word or is inside one that has,
// which distinguishes its errors.
constexpr std::string_view soundPrefix = ":sound";
constexpr const char* microphoneName = "sound-source";
constexpr const char* soundQueue = "sound-queue";

// Seconds within which an encoder has to complete a file: it has to write what it holds, a few megabytes at most.
constexpr double longestFinish = 8;

/// How a clip is encoded, in pieces of GStreamer's launch syntax.
struct ClipFormat {
  std::string video;  // raw pictures to H.264
  std::string sound;  // raw sound to AAC or what else there is; empty when there is nothing
  std::string muxer;
};

// In order of preference. Ten seconds of 1280 by 720 at this rate are five megabytes, and a key picture a second lets
// players seek. The software encoder comes before the hardware's: it does the same everywhere, and keeps up at this
// size on every machine that we know of.
constexpr std::array videoEncoders{"x264enc tune=zerolatency speed-preset=ultrafast bitrate=4000 key-int-max=30",
                                   "openh264enc complexity=low rate-control=bitrate bitrate=4000000 gop-size=30",
                                   "v4l2h264enc"};
constexpr std::array soundEncoders{"avenc_aac bitrate=96000", "voaacenc bitrate=96000", "faac bitrate=96000",
                                   "opusenc bitrate=64000"};

bool isInstalled(std::string_view launch) {
  const std::string factory(launch.substr(0, launch.find(' ')));
  return static_cast<bool>(GRef<GstElementFactory>::adopt(gst_element_factory_find(factory.c_str())));
}

template <std::size_t count>
std::string firstInstalled(const std::array<const char*, count>& encoders) {
  const auto* const found = std::find_if(encoders.begin(), encoders.end(), isInstalled);
  return found == encoders.end() ? "" : *found;
}

// The best that the installed plug-ins can do; nothing without an H.264 encoder or a muxer.
std::optional<ClipFormat> chooseFormat(VideoExportType type) {
  const char* const muxer = type == VideoExportType::mp4 ? "mp4mux" : "qtmux";
  ClipFormat format{firstInstalled(videoEncoders), firstInstalled(soundEncoders), muxer};
  if (format.video.empty() || !isInstalled(muxer)) return std::nullopt;
  return format;
}

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

// Puts a frame into the recording, and shares its pixels. `time` counts from the recording's beginning.
void pushFrame(GstElement& pictures, GstSample& frame, GstClockTime time) {
  gst_app_src_set_caps(GST_APP_SRC(&pictures), gst_sample_get_caps(&frame));
  auto* const buffer = gst_buffer_copy(gst_sample_get_buffer(&frame));
  GST_BUFFER_PTS(buffer) = time;
  GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
  gst_app_src_push_buffer(GST_APP_SRC(&pictures), buffer);
}

// The muxer moves the index before the pictures and keeps them in a draft until then. GStreamer's waits for itself for
// ever when it cannot open its draft, so that is a file in memory, which always opens.
FilePtr makeDraft() {
  return FilePtr(fdopen(memfd_create("orivex-draft", MFD_CLOEXEC), "w"));
}

// The microphone that voice messages use, ready; null when it does not open.
GRef<GstElement> openMicrophone() {
  const auto made = makeSourceBin(audioSource());
  if (const auto* const source = std::get_if<GRef<GstElement>>(&made)) {
    gst_object_set_name(GST_OBJECT(source->get()), microphoneName);
    if (gst_element_set_state(source->get(), GST_STATE_READY) != GST_STATE_CHANGE_FAILURE) return *source;
    gst_element_set_state(source->get(), GST_STATE_NULL);
  }
  log::warning("camera: the microphone does not open");
  return nullptr;
}

ElementOrError build(VideoExportType type, bool withSound, const std::string& clip, std::FILE* draft) {
  const auto format = chooseFormat(type);
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
  const auto draftPath = "/proc/self/fd/" + std::to_string(fileno(draft));
  g_object_set(elementIn(pipeline, "file").get(), "location", clip.c_str(), nullptr);
  g_object_set(elementIn(pipeline, "mux").get(), "faststart-file", draftPath.c_str(), nullptr);
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
    // Plug-ins stay loaded once an element of theirs was made.
    if (const auto format = chooseFormat(type)) parsePipeline(describe(*format, !format->sound.empty()));
  });
}

void ClipRecorder::start(bool withSound) {
  withSound_ = withSound;
  pipeline_.reset();
  const std::shared_ptr<std::FILE> draft = makeDraft();
  auto made = CaptureFile::make(MediaType::video, type_ == VideoExportType::mp4 ? ".mp4" : ".mov");
  if (auto* const failure = std::get_if<Failure>(&made); failure || !draft) {
    threads_.main.async(alive_.guard([this, reason = failure ? failure->description : "no memory"] { fail(reason); }));
    return;
  }
  file_ = std::get<std::shared_ptr<CaptureFile>>(std::move(made));
  pipeline_ = std::make_unique<Pipeline>(
      threads_,
      [type = type_, withSound, file = file_, draft] { return build(type, withSound, file->path(), draft.get()); },
      Pipeline::Handlers{.ended = [this] { ended(); },
                         .failed = [this](const PipelineError& error) { pipelineFailed(error); }});
  connectFrames();
}

void ClipRecorder::connectFrames() {
  const auto longest = static_cast<GstClockTime>(longest_ * static_cast<double>(GST_SECOND));
  const std::function<void()> began = alive_.guard([this] {
    if (!finishing_) handlers_.began();
  });
  pipeline_->run([frames = frames_, longest, began, &main = threads_.main](GstElement& pipeline) {
    // From the first frame that comes to the last that still fits.
    frames->setReceiver([pictures = elementIn(pipeline, "pictures"), base = gst_element_get_base_time(&pipeline),
                         longest, began, &main,
                         first = GST_CLOCK_TIME_NONE](GstSample& frame, GstClockTime time) mutable {
      if (!GST_CLOCK_TIME_IS_VALID(time) || time < base) return;  // taken before the recording began
      const bool isFirst = !GST_CLOCK_TIME_IS_VALID(first);
      if (isFirst) first = time;
      if (time - first >= longest) return;
      pushFrame(*pictures.get(), frame, time - base);
      if (isFirst) main.async([began] { began(); });
    });
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

// A microphone that opens and then fails, as when all are muted by a switch, must not cost the video.
void ClipRecorder::pipelineFailed(const PipelineError& error) {
  if (withSound_ && !finishing_ && error.origin.find(soundPrefix) != std::string::npos) {
    log::warning("camera: the microphone does not work: " + error.text);
    start(false);
  } else {
    fail(error.text);
  }
}

void ClipRecorder::fail(const std::string& reason) {
  log::warning("camera: no video: " + reason);
  const auto failed = handlers_.failed;
  failed();
}

}  // namespace orivex::gtk
