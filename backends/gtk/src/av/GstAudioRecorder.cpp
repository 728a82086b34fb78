#include "GstAudioRecorder.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <span>
#include <system_error>
#include <utility>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Microseconds without a sample after which a microphone is taken to be gone. The clock stands still while the machine
// sleeps.
constexpr gint64 longestWait = gint64{3} * G_USEC_PER_SEC;

constexpr double fullScale = 32768;

// A file of its greatest size has no room either.
bool meansFullDisk(const std::error_code& error) {
  return error == std::errc::no_space_on_device || error.value() == EDQUOT || error == std::errc::file_too_large;
}

int peakOf(std::span<const std::int16_t> samples) {
  int peak = 0;
  for (const std::int16_t sample : samples) peak = std::max(peak, std::abs(int{sample}));
  return peak;
}

bool hasElement(const char* name) {
  return static_cast<bool>(GRef<GstElementFactory>::adopt(gst_element_factory_find(name)));
}

bool existsInRuntimeFolder(const char* socket) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::path(g_get_user_runtime_dir()) / socket, error);
}

std::string pipelineDescription(const PcmFormat& format) {
  return audioSource() + " ! audioconvert ! audioresample ! audio/x-raw,format=S16LE,layout=interleaved,rate=" +
         std::to_string(format.rate) + ",channels=" + std::to_string(format.channels) +
         " ! appsink name=samples sync=false";
}

}  // namespace

std::string audioSource() {
  if (const char* const given = g_getenv("ORIVEX_AUDIO_SOURCE"); given && *given) return given;
  // Microseconds. Few pieces a second cost little; much room for them outlasts a disk that is slow for a while.
  if ((g_getenv("PULSE_SERVER") || existsInRuntimeFolder("pulse/native")) && hasElement("pulsesrc")) {
    return "pulsesrc latency-time=20000 buffer-time=2000000";
  }
  if (existsInRuntimeFolder("pipewire-0") && hasElement("pipewiresrc")) return "pipewiresrc";
  return "autoaudiosrc";
}

/// What the streaming thread and the main thread share of one recording.
class GstAudioRecorder::Capture {
 public:
  explicit Capture(WavFile file) : file_(std::move(file)) {}

  bool hasBegun() const { return lastTaken_ != 0; }
  bool isActive() const { return active_; }

  void begin() {
    lastTaken_ = g_get_monotonic_time();
    active_ = true;
  }

  void take(GstBuffer& buffer) {
    GstMapInfo map;
    if (!gst_buffer_map(&buffer, &map, GST_MAP_READ)) return;
    take({reinterpret_cast<const std::byte*>(map.data), map.size});
    gst_buffer_unmap(&buffer, &map);
  }

  void discard() {
    const std::lock_guard lock(mutex_);
    discarded_ = true;
    file_.close();
  }

  std::size_t bytes() const { return bytes_; }
  bool isDiskFull() const { return diskFull_; }

  /// Ends the recording, if it goes on, with a line in the log.
  void fail(const std::string& reason) {
    const std::lock_guard lock(mutex_);
    failLocked(reason);
  }

  void end() {
    const std::lock_guard lock(mutex_);
    active_ = false;
    file_.close();
  }

  /// The highest sample since the last call; nothing when there was none.
  std::optional<int> takePeak() {
    const auto peak = peak_.exchange(none);
    return peak == none ? std::nullopt : std::optional(peak);
  }

  bool isStarved() const { return g_get_monotonic_time() - lastTaken_ > longestWait; }

 private:
  static constexpr int none = -1;

  void take(std::span<const std::byte> frames) {
    const std::lock_guard lock(mutex_);
    if (!active_) return;
    bytes_ += frames.size();
    const int peak = peakOf({reinterpret_cast<const std::int16_t*>(frames.data()), frames.size() / 2});
    peak_ = std::max(peak_.load(), peak);
    lastTaken_ = g_get_monotonic_time();
    if (discarded_) return;
    if (const auto error = file_.append(frames)) {
      diskFull_ = meansFullDisk(error);
      failLocked(error.message());
    }
  }

  void failLocked(const std::string& reason) {
    if (!active_.exchange(false)) return;
    file_.close();
    log::warning("Recording ended: " + reason);
  }

  std::mutex mutex_;
  WavFile file_;
  bool discarded_ = false;
  std::atomic<std::size_t> bytes_ = 0;  // from the microphone, kept or not
  std::atomic<bool> diskFull_ = false;
  std::atomic<bool> active_ = false;
  std::atomic<int> peak_ = none;
  std::atomic<gint64> lastTaken_ = 0;
};

bool GstAudioRecorder::prepareToRecord() {
  if (capture_) return true;
  auto made = WavFile::create(path_, format_);
  if (const auto* error = std::get_if<std::error_code>(&made)) {
    diskFull_ = meansFullDisk(*error);
    log::warning("Cannot record into " + path_ + ": " + error->message());
    return false;
  }
  capture_ = std::make_shared<Capture>(std::get<WavFile>(std::move(made)));
  return true;
}

bool GstAudioRecorder::record() {
  if (capture_ && capture_->hasBegun()) return isRecording();
  if (!prepareToRecord()) return false;
  capture_->begin();
  const auto build = [capture = capture_, format = format_] {
    auto parsed = parsePipeline(pipelineDescription(format));
    if (const auto* const pipeline = std::get_if<GRef<GstElement>>(&parsed)) {
      handleSamples(*elementIn(*pipeline->get(), "samples").get(), [capture](const SharedSample& sample) {
        if (auto* const buffer = gst_sample_get_buffer(sample.get())) capture->take(*buffer);
      });
    }
    return parsed;
  };
  pipeline_ = std::make_unique<Pipeline>(
      threads_, build,
      Pipeline::Handlers{.ended = [this] { capture_->fail("the microphone has nothing more"); },
                         .failed = [this](const PipelineError& error) { capture_->fail(error.text); },
                         .needsDevice = true});
  return true;
}

bool GstAudioRecorder::isRecording() const {
  return capture_ && capture_->isActive();
}

void GstAudioRecorder::stop() {
  if (capture_) capture_->end();
  pipeline_.reset();
}

void GstAudioRecorder::discard() {
  if (capture_) capture_->discard();
}

double GstAudioRecorder::recordedSeconds() const {
  return capture_ ? static_cast<double>(capture_->bytes()) / format_.frameSize() / format_.rate : 0;
}

bool GstAudioRecorder::isDiskFull() const {
  return diskFull_ || (capture_ && capture_->isDiskFull());
}

void GstAudioRecorder::updateMeters() {
  if (!metering_ || !isRecording()) {
    power_ = silence;
  } else if (const auto peak = capture_->takePeak()) {
    power_ = *peak == 0 ? silence : static_cast<float>(20 * std::log10(*peak / fullScale));
  } else if (capture_->isStarved()) {
    capture_->fail("no sound comes from the microphone");
    pipeline_.reset();
  }
}

float GstAudioRecorder::peakPower(int channel) const {
  return channel >= 0 && channel < format_.channels ? power_ : silence;
}

}  // namespace orivex::gtk
