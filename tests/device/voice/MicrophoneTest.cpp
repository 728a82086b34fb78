#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "WavClip.h"
#include "audio/GstAudioRecorder.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

// Whichever sound server there is: the device's own microphone hears 440 Hz.
TEST(Microphone, OfTheDeviceIsTheOneThatIsRecorded) {
  const TemporaryFolder folder;
  GlibMainQueue queue;
  WorkerPool workers{1, std::chrono::seconds(1)};
  const auto file = folder.path() / "a.wav";
  GstAudioRecorder recorder({queue, workers}, file, PcmFormat{});
  ASSERT_TRUE(recorder.record());
  ASSERT_TRUE(wait([&] { return recorder.recordedSeconds() > 1; }, 20));
  recorder.stop();
  const WavClip clip(file);
  EXPECT_EQ(clip.fault, "");
  EXPECT_NEAR(clip.frequency(), 440, 2);
}

}  // namespace
}  // namespace orivex::gtk
