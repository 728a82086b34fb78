#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>

#include <gst/pbutils/pbutils.h>

#include "glib/GRef.h"
#include "support/BusService.h"
#include "support/CameraFixture.h"
#include "support/VideoFiles.h"
#include "support/Visitor.h"
#include "support/Widgets.h"

namespace orivex::gtk {
namespace {

/// What a player finds in a file.
struct Facts {
  double seconds = 0;
  unsigned width = 0;
  unsigned height = 0;
  std::string video;
  std::string sound;
};

using StreamsPtr = std::unique_ptr<GList, FreeWith<gst_discoverer_stream_info_list_free>>;

std::string formatOf(const StreamsPtr& streams) {
  if (!streams) return "";
  const GstCapsPtr caps(gst_discoverer_stream_info_get_caps(static_cast<GstDiscovererStreamInfo*>(streams->data)));
  return gst_structure_get_name(gst_caps_get_structure(caps.get(), 0));
}

std::optional<Facts> discover(const Url& file) {
  const auto discoverer = GRef<GstDiscoverer>::adopt(gst_discoverer_new(10 * GST_SECOND, nullptr));
  const auto info = GRef<GstDiscovererInfo>::adopt(
      gst_discoverer_discover_uri(discoverer.get(), file.absoluteString().c_str(), nullptr));
  if (!info || gst_discoverer_info_get_result(info.get()) != GST_DISCOVERER_OK) return std::nullopt;
  const StreamsPtr videos(gst_discoverer_info_get_video_streams(info.get()));
  const StreamsPtr sounds(gst_discoverer_info_get_audio_streams(info.get()));
  auto* const video = videos ? static_cast<GstDiscovererVideoInfo*>(videos->data) : nullptr;
  return Facts{static_cast<double>(gst_discoverer_info_get_duration(info.get())) / GST_SECOND,
               video ? gst_discoverer_video_info_get_width(video) : 0,
               video ? gst_discoverer_video_info_get_height(video) : 0, formatOf(videos), formatOf(sounds)};
}

bool isPrivate(const std::filesystem::path& path) {
  using std::filesystem::perms;
  const auto others = perms::group_all | perms::others_all;
  return (std::filesystem::status(path).permissions() & others) == perms::none &&
         (std::filesystem::status(path.parent_path()).permissions() & others) == perms::none;
}

/// Whether the index stands before the pictures, so that a player can begin before it has the whole file.
bool playsProgressively(const std::filesystem::path& path) {
  const auto bytes = contentsOf(path);
  return bytes.find("moov") < bytes.find("mdat");
}

/// A desktop's sensor service that tells one orientation, on that bus.
class FakeSensor {
 public:
  explicit FakeSensor(std::string orientation) : orientation_(std::move(orientation)) {
    service_.add(
        "/net/hadess/SensorProxy",
        "<interface name='net.hadess.SensorProxy'><method name='ClaimAccelerometer'/><method "
        "name='ReleaseAccelerometer'/>"
        "<property name='AccelerometerOrientation' type='s' access='read'/></interface>",
        [this](auto&, auto*) {
          claimed_ = true;
          return g_variant_new("()");
        },
        [this] { return g_variant_new_string(orientation_.c_str()); });
    service_.own("net.hadess.SensorProxy");
  }

  /// Whether somebody asked it to watch, and so knows the orientation.
  bool isClaimed() const { return claimed_; }

 private:
  const std::string orientation_;
  bool claimed_ = false;
  BusService service_{g_getenv("DBUS_SYSTEM_BUS_ADDRESS")};
};

class CaptureTest : public CameraFixture {
 protected:
  /// What a player finds in the capture that is reviewed and then used.
  Facts expectUsed(MediaType type) {
    EXPECT_TRUE(waitForReview());
    click("使用");
    EXPECT_TRUE(waitForOutcome());
    const auto* const capture = outcomes.size() == 1 ? std::get_if<PickedMedia>(&outcomes[0]) : nullptr;
    const auto facts = capture && capture->mediaType == type ? discover(capture->file) : std::nullopt;
    EXPECT_TRUE(facts);
    if (facts) path_ = *capture->file.filePath();
    return facts.value_or(Facts{});
  }

  std::string path_;
};

TEST_F(CaptureTest, APhotoIsAJpegOfTheCamerasSizeAndColours) {
  openLive("videotestsrc is-live=true pattern=white ! video/x-raw,format=I420,width=1280,height=720,framerate=30/1");
  tapShutter();
  const auto facts = expectUsed(MediaType::image);
  EXPECT_EQ(facts.video, "image/jpeg");
  EXPECT_EQ(facts.width, 1280U);
  EXPECT_EQ(facts.height, 720U);
  EXPECT_TRUE(isPrivate(path_));
  EXPECT_EQ(files().size(), 1U);
  const auto pixels = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file(path_.c_str(), nullptr));
  ASSERT_TRUE(pixels);
  EXPECT_GT(*gdk_pixbuf_read_pixels(pixels.get()), 250) << "a video's white is not a JPEG's white";
}

TEST_F(CaptureTest, APhotoOfATurnedDeviceIsUpright) {
  pass(2);  // a fresh process still asks the bus for its session's services
  const FakeSensor sensor("right-up");
  openLive();
  ASSERT_TRUE(wait([&] { return sensor.isClaimed(); }, hangs));
  tapShutter();
  const auto facts = expectUsed(MediaType::image);
  EXPECT_EQ(facts.width, 720U);
  EXPECT_EQ(facts.height, 1280U);
}

// With a real pointer, which the button's own idea of a click would hear too.
TEST_F(CaptureTest, APointersHoldTakesNoPhotoBesides) {
  openLive();
  graphene_rect_t bounds;
  ASSERT_TRUE(gtk_widget_compute_bounds(button("shutter"), GTK_WIDGET(hostWindow().gtkWindow()), &bounds));
  // A compositor may still move the window into its place: the button is under the pointer once that moves after it.
  int moves = 0;
  const auto isUnderPointer = [&] {
    hands("pointer", bounds.origin.x + bounds.size.width / 2 + static_cast<float>(moves++ % 2),
          bounds.origin.y + bounds.size.height / 2);
    return (gtk_widget_get_state_flags(button("shutter")) & GTK_STATE_FLAG_PRELIGHT) != 0;
  };
  ASSERT_TRUE(wait(isUnderPointer, hangs)) << "the pointer did not arrive";
  hands("button-down");
  ASSERT_TRUE(wait([&] { return !clock().empty(); }, hangs)) << "the press did not arrive";
  hands("button-up");
  ASSERT_TRUE(wait([&] { return clock().empty(); }, hangs)) << "the release did not arrive";
  pass(0.5);
  EXPECT_TRUE(button("shutter")) << "a photo was taken";
}

TEST_F(CaptureTest, AHoldRecordsAVideoWithSoundForAsLong) {
  openLive();
  hold(1);
  const auto facts = expectUsed(MediaType::video);
  EXPECT_EQ(facts.video, "video/x-h264");
  EXPECT_EQ(facts.sound, "audio/mpeg");
  EXPECT_EQ(facts.width, 1280U);
  EXPECT_EQ(facts.height, 720U);
  EXPECT_GE(facts.seconds, 1);
  EXPECT_LE(facts.seconds, 4);
  EXPECT_TRUE(playsProgressively(path_));
  EXPECT_TRUE(isPrivate(path_));
  EXPECT_EQ(files().size(), 1U);
}

TEST_F(CaptureTest, ARecordingEndsByItselfAtItsGreatestLength) {
  setConsent(false);  // the pictures' own time decides; sound would go on until a busy machine has noticed
  openLive(testCamera, {.maxRecordDuration = 1.5});
  beginHold();
  const auto facts = expectUsed(MediaType::video);
  EXPECT_GT(facts.seconds, 0);
  EXPECT_LE(facts.seconds, 1.6);
}

// One microphone and one consent with voice messages.
TEST_F(CaptureTest, SoundComesFromTheNamedSourceAndOnlyWithConsent) {
  const struct {
    const char* source;
    bool consent;
    const char* sound;
  } cases[] = {
      {"audiotestsrc is-live=true ! audio/x-raw,channels=1", true, "audio/mpeg"},
      {"audiotestsrc is-live=true", false, ""},
      {"no-such-element", true, ""},
      {"pulsesrc server=unix:/nonexistent", true, ""},
      {"audiotestsrc is-live=true ! identity error-after=3", true, ""},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.source);
    g_setenv("ORIVEX_AUDIO_SOURCE", row.source, TRUE);
    setConsent(row.consent);
    openLive();
    hold(1);
    const auto facts = expectUsed(MediaType::video);
    EXPECT_EQ(facts.video, "video/x-h264");
    EXPECT_EQ(facts.sound, row.sound);
  }
  g_unsetenv("ORIVEX_AUDIO_SOURCE");
}

TEST_F(CaptureTest, TheFirstHoldAsksForTheMicrophoneAndRecordsNothing) {
  setConsent(std::nullopt);
  openLive();
  beginHold();
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, hangs));
  endHold();
  EXPECT_EQ(clock(), "");
  EXPECT_TRUE(files().empty());
  leave();
  EXPECT_EQ(openDialog(), nullptr);
  EXPECT_FALSE(button("shutter")) << "the camera outlives the screen that opened it";
  pass(0.2);
  EXPECT_TRUE(outcomes.empty());
}

// With real keys: a hold records, a tap takes a photo, and the key that did it answers nothing that comes after.
TEST_F(CaptureTest, KeysDoAtTheShutterWhatThePointerDoes) {
  openLive(testCamera, {.maxRecordDuration = 1.5});
  gtk_widget_grab_focus(button("shutter"));
  hands({"key-down", "space"});
  ASSERT_TRUE(wait([&] { return clock() == "0:01"; }, hangs)) << "no video is recorded";
  ASSERT_TRUE(waitForReview());
  pass(1.5);  // the key repeats meanwhile
  EXPECT_TRUE(outcomes.empty()) << "the video was sent unseen";
  hands({"key-up", "space"});
  pass(0.3);
  EXPECT_TRUE(button("使用"));
  hands({"key", "Escape"});
  ASSERT_TRUE(waitForLive()) << "Escape leaves the review by more than one step";
  EXPECT_TRUE(outcomes.empty());
  hands({"key", "Return"});
  ASSERT_TRUE(waitForReview());
  hands({"key", "Return"});
  ASSERT_TRUE(waitForOutcome());
  EXPECT_EQ(std::get<PickedMedia>(outcomes[0]).mediaType, MediaType::image);
}

TEST_F(CaptureTest, WhatIsTooShortOrNotUsedLeavesNoFile) {
  openLive();
  beginHold();
  pass(0.6);
  endHold();
  ASSERT_TRUE(waitForLive());
  EXPECT_TRUE(wait([] { return files().empty(); }, hangs)) << "a recording that was too short was kept";
  tapShutter();
  ASSERT_TRUE(waitForReview());
  EXPECT_EQ(files().size(), 1U);
  EXPECT_TRUE(wait([] { return streamingThreads() == 0; }, hangs)) << "the camera is open during the review";
  click("重拍");
  ASSERT_TRUE(waitForLive());
  EXPECT_TRUE(wait([] { return files().empty(); }, hangs)) << "a photo that was taken again was kept";
  hold(1);
  ASSERT_TRUE(waitForReview());
  click("window-close-symbolic");
  ASSERT_TRUE(waitForOutcome());
  EXPECT_TRUE(std::holds_alternative<CaptureCancelled>(outcomes[0]));
  EXPECT_TRUE(wait([] { return files().empty(); }, hangs)) << "a video that was not used was kept";
}

TEST_F(CaptureTest, OptionsForbidPhotosOrVideos) {
  openLive(testCamera, {.allowTakePhoto = false});
  tapShutter();
  pass(0.3);
  EXPECT_FALSE(button("使用"));
  click("window-close-symbolic");
  ASSERT_TRUE(waitForOutcome());
  openLive(testCamera, {.allowRecordVideo = false});
  beginHold();
  pass(0.6);
  endHold();
  EXPECT_TRUE(files().empty());
}

// On a busy device the hold may end before it is known that the first picture is in.
TEST_F(CaptureTest, ARecordingThatWasGivenUpNoLongerBegins) {
  openLive();
  beginHold();
  ASSERT_TRUE(wait([&] { return !clock().empty(); }, hangs));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  endHold();
  pass(0.3);
  EXPECT_EQ(clock(), "");
}

TEST_F(CaptureTest, TheOtherCameraTakesThePictureAfterASwitch) {
  const std::string small = "videotestsrc is-live=true ! video/x-raw,width=640,height=480,framerate=30/1";
  openLive(testCamera + "\n" + small);
  click("emblem-synchronizing-symbolic");
  ASSERT_TRUE(waitForLive());
  tapShutter();
  EXPECT_EQ(expectUsed(MediaType::image).width, 640U);
}

TEST_F(CaptureTest, APhoneHeldSidewaysShowsEveryControlAtTheLargestText) {
  auto* const window = hostWindow().gtkWindow();
  auto* const settings = gtk_settings_get_default();
  g_object_set(settings, "gtk-xft-dpi", 96 * 1024 * 2, nullptr);
  gtk_window_set_default_size(window, 640, 360);
  openLive();
  const auto isInside = [&](GtkWidget* control) {
    graphene_rect_t place;
    return control && gtk_widget_compute_bounds(control, GTK_WIDGET(window), &place) && place.origin.x >= 0 &&
           place.origin.y >= 0 && place.origin.x + place.size.width <= 640 && place.origin.y + place.size.height <= 360;
  };
  EXPECT_TRUE(isInside(button("shutter")));
  EXPECT_TRUE(isInside(button("window-close-symbolic")));
  tapShutter();
  ASSERT_TRUE(waitForReview());
  EXPECT_TRUE(wait([&] { return isInside(button("重拍")); }, hangs));
  EXPECT_TRUE(wait([&] { return isInside(button("使用")); }, hangs));
  gtk_settings_reset_property(settings, "gtk-xft-dpi");
}

}  // namespace
}  // namespace orivex::gtk
