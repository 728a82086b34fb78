#include <chrono>
#include <string>

#include "support/CameraFixture.h"
#include "support/Processes.h"

namespace orivex::gtk {
namespace {

using EndingTest = CameraFixture;

std::ptrdiff_t threads() {
  g_thread_pool_stop_unused_threads();
  return entriesOf("/proc/self/task");
}

TEST_F(EndingTest, FailuresAreToldOnceAndNothingHangs) {
  const struct {
    const char* sources;
    CameraFailure failure;
  } cases[] = {
      {"", CameraFailure::noCamera},
      {"no-such-element", CameraFailure::failed},
      {"videotestsrc ! fakesink", CameraFailure::failed},
      {"videotestsrc is-live=true pattern=no-such-pattern", CameraFailure::failed},
      {"audiotestsrc is-live=true", CameraFailure::failed},
      {"v4l2src device=/dev/no-such-camera", CameraFailure::noCamera},
      {"videotestsrc num-buffers=30", CameraFailure::failed},
      {"videotestsrc is-live=true ! identity error-after=30", CameraFailure::failed},
  };
  for (const auto& [sources, failure] : cases) {
    outcomes.clear();
    setSources(sources);
    present();
    EXPECT_TRUE(outcomes.empty()) << "called back inside the call";
    ASSERT_TRUE(waitForOutcome()) << sources;
    ASSERT_TRUE(std::holds_alternative<CameraFailure>(outcomes[0])) << sources;
    EXPECT_EQ(std::get<CameraFailure>(outcomes[0]), failure) << sources;
    EXPECT_FALSE(button("shutter")) << sources;
    pass(0.1);
    EXPECT_EQ(outcomes.size(), 1U) << sources;
  }
}

TEST_F(EndingTest, ACameraThatBreaksWhileItRecordsLeavesNoFile) {
  openLive("videotestsrc is-live=true ! video/x-raw,framerate=30/1 ! identity error-after=60");
  beginHold();
  ASSERT_TRUE(waitForOutcome());
  EXPECT_EQ(std::get<CameraFailure>(outcomes[0]), CameraFailure::failed);
  EXPECT_TRUE(wait([] { return files().empty(); }, hangs));
}

TEST_F(EndingTest, ASecondScreenIsIgnoredUntilTheFirstIsClosed) {
  openLive();
  present();
  click("window-close-symbolic");
  ASSERT_TRUE(waitForOutcome());
  pass(0.2);
  EXPECT_EQ(outcomes.size(), 1U);
  EXPECT_TRUE(std::holds_alternative<CaptureCancelled>(outcomes[0]));
  openLive();
}

TEST_F(EndingTest, AWindowThatGoesWhileItRecordsTakesEverythingWithIt) {
  openLive();
  beginHold();
  ASSERT_TRUE(wait([] { return !files().empty(); }, hangs));
  pass(0.5);
  EXPECT_GT(streamingThreads(), 0);
  closeWindow();
  EXPECT_TRUE(wait([] { return files().empty() && streamingThreads() == 0; }, hangs));
  EXPECT_TRUE(outcomes.empty());
}

TEST_F(EndingTest, AHiddenApplicationLetsGoOfTheCamera) {
  setSources(testCamera);
  WorkerPool worker(1, std::chrono::seconds(1));
  CameraScreen screen(
      {mainQueue(), worker}, hostWindow(), {}, [] { return std::optional(true); }, [](const auto&) {});
  ASSERT_TRUE(waitForLive());
  screen.pause();
  EXPECT_TRUE(wait([] { return streamingThreads() == 0; }, hangs));
  screen.resume();
  ASSERT_TRUE(waitForLive());
  beginHold();
  ASSERT_TRUE(wait([&] { return clock() == "0:01"; }, hangs));
  screen.pause();
  EXPECT_TRUE(waitForReview()) << "the recording was lost";
  EXPECT_TRUE(wait([] { return streamingThreads() == 0; }, hangs));
  screen.resume();
  EXPECT_TRUE(wait([] { return streamingThreads() > 0; }, hangs)) << "the video does not play";
}

TEST_F(EndingTest, ManyOpeningsLeaveNoThreadAndNoDescriptorBehind) {
  const auto openAndClose = [this] {
    openLive();
    click("window-close-symbolic");
    ASSERT_TRUE(waitForOutcome());
    ASSERT_TRUE(wait([] { return streamingThreads() == 0; }, hangs));
  };
  openAndClose();  // what is loaded once
  const auto descriptorsBefore = entriesOf("/proc/self/fd");
  const auto threadsBefore = threads();
  for (int i = 0; i < 20; ++i) openAndClose();
  EXPECT_TRUE(wait([&] { return entriesOf("/proc/self/fd") <= descriptorsBefore; }, hangs));
  EXPECT_TRUE(wait([&] { return threads() <= threadsBefore; }, hangs));
}

}  // namespace
}  // namespace orivex::gtk
