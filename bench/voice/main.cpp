#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <new>
#include <vector>

#include <sys/wait.h>

#include "Bench.h"
#include "LoopMeter.h"
#include "ShopWindow.h"
#include "av/Pipeline.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include "orivex/platform/Platform.h"
#include "orivex/sdk/OrivexSDK.h"
#include "orivex/voice/RecordManager.h"
#include "orivex/voice/VoiceManager.h"

namespace {

std::atomic<std::size_t> allocations{0};

}  // namespace

// The allocator itself; the forms for arrays go through these. Inline, the compiler would take free after new for a
// mistake.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)
[[gnu::noinline]] void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc)

namespace orivex::bench {
namespace {

namespace fs = std::filesystem;

constexpr int clips = 15;
constexpr double seconds = 10;
constexpr std::uintmax_t headerSize = 44;

// What the component records with, written by GStreamer alone.
std::string barePipeline(const fs::path& file) {
  return "pulsesrc latency-time=20000 buffer-time=2000000 ! audioconvert ! audioresample ! "
         "audio/x-raw,format=S16LE,rate=16000,channels=1 ! level ! wavenc ! filesink buffer-mode=unbuffered location=" +
         file.string();
}

bool hasSound(const fs::path& file) {
  std::error_code error;
  const auto size = fs::file_size(file, error);
  return !error && size > headerSize;
}

// Of all threads.
double processorMilliseconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

VoiceManager& voice() {
  return VoiceManager::shared();
}

double millisecondsToSound(double& hold) {
  const double before = milliseconds();
  voice().startRecording();
  hold = std::max(hold, milliseconds() - before);
  const fs::path file = voice().recorder_file_path->filePath().value();
  while (!hasSound(file) && milliseconds() - before < 10000) g_usleep(200);
  const double passed = milliseconds() - before;
  const double stopping = milliseconds();
  voice().stopRecording();
  hold = std::max(hold, milliseconds() - stopping);
  voice().deleteRecordingFile();
  return passed;
}

double bareMillisecondsToSound(const fs::path& folder) {
  const auto file = folder / "bare.wav";
  fs::remove(file);
  const auto command = "exec gst-launch-1.0 -q " + barePipeline(file);
  const char* const arguments[] = {"sh", "-c", command.c_str(), nullptr};
  GPid process = 0;
  const double before = milliseconds();
  const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
  g_spawn_async(nullptr, const_cast<char**>(arguments), nullptr, flags, nullptr, nullptr, &process, nullptr);
  while (!hasSound(file) && milliseconds() - before < 10000) g_usleep(200);
  const double passed = milliseconds() - before;
  ::kill(process, SIGKILL);
  ::waitpid(process, nullptr, 0);
  return passed;
}

void measureStart(const fs::path& folder) {
  std::vector<double> ours;
  std::vector<double> bare;
  double hold = 0;
  millisecondsToSound(hold);
  hold = 0;
  for (int clip = 0; clip < clips; ++clip) {
    ours.push_back(millisecondsToSound(hold));
    bare.push_back(bareMillisecondsToSound(folder));
    gtk::pass(0.1);
  }
  print("from the request to sound on disk (median)", median(ours), "ms");
  print("the same by gst-launch (median)", median(bare), "ms");
  print("from the request to sound on disk, ratio", median(ours) / median(bare), "");
  print("longest hold of the main thread by starting or stopping", hold, "ms");
}

void measureRecording(const fs::path& folder, const std::shared_ptr<Window>& window) {
  gtk::WorkerPool workers(1, std::chrono::seconds(1));
  auto yardstick = std::make_unique<gtk::Pipeline>(
      gtk::PipelineThreads{Platform::current().mainQueue, workers},
      [&] { return gtk::parsePipeline(barePipeline(folder / "yardstick.wav")); },
      gtk::Pipeline::Handlers{.ended = {}, .failed = [](const gtk::PipelineError& /*error*/) {
                                std::fputs("the yardstick failed\n", stderr);
                              }});
  gtk::pass(1);
  double before = processorMilliseconds();
  runLoop(seconds);
  const double bare = processorMilliseconds() - before;
  yardstick.reset();

  const auto& overlay = RecordManager::shared().recordingView();
  overlay->setCenter(window->rootViewController()->view()->center());
  window->rootViewController()->view()->addSubview(overlay);
  voice().startRecording();
  RecordManager::shared().beginOverlay();
  gtk::pass(1);
  LoopMeter meter;
  before = processorMilliseconds();
  runLoop(seconds);
  const double ours = processorMilliseconds() - before;
  print("processor time of 10 s of recording with the overlay", ours, "ms");
  print("the same of the bare pipeline", bare, "ms");
  print("processor time, ratio", ours / bare, "");
  print("wake-ups of the main thread in a second", meter.take().count / seconds, "");
}

void measureLevel() {
  constexpr int batches = 10;
  constexpr int calls = 100000;
  std::vector<double> each;
  std::vector<double> counts;
  float sum = 0;
  for (int batch = 0; batch < batches; ++batch) {
    const auto before = allocations.load();
    const double started = milliseconds();
    for (int call = 0; call < calls; ++call) sum += voice().currentVolumeLevel();
    each.push_back((milliseconds() - started) * 1000 / calls);
    counts.push_back(static_cast<double>(allocations.load() - before));
  }
  print("currentVolumeLevel while recording (median of 10 batches)", median(each), "us");
  // The least: other threads allocate now and then.
  print("allocations of 100,000 calls", *std::min_element(counts.begin(), counts.end()), "");
  if (!(sum > 0)) std::fputs("the microphone hears nothing\n", stderr);
}

}  // namespace
}  // namespace orivex::bench

// voice-bench: needs a display and a sound server that hears something.
int main() {
  using namespace orivex;
  const auto [window, screens] = bench::openShop(360, 720);
  const TemporaryFolder folder;
  VoiceManager::shared().isRecordingAllowed = true;
  bench::measureStart(folder.path());
  bench::measureRecording(folder.path(), screens);
  bench::measureLevel();
  RecordManager::shared().closeMicrophone();
  VoiceManager::shared().deleteRecordingFile();
  return 0;
}
