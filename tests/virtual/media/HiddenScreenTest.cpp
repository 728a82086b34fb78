#include "PickingTest.h"

#include "orivex/platform/ui/ViewController.h"
#include "orivex/voice/VoiceManager.h"

namespace orivex::testing {
namespace {

/// A chat screen that its host has covered, or taken away and still holds.
class HiddenScreenTest : public PickingTest {
 protected:
  HiddenScreenTest() { device_.recordPermission().remember(true); }

  VirtualWebEngine& page() { return pageOf(*screen_); }

  void post(const std::string& name) { ask(name, R"({"deviceId":"d","action":"start"})"); }

  void hide(bool covered) {
    if (covered) {
      screen_->present(std::make_shared<ViewController>(), false);
    } else {
      screen_->dismiss(false);
    }
    device_.runUntilIdle();
  }

  bool anythingOpened() {
    return device_.camera().presented() || device_.photoLibrary().shown() || device_.documentPicker().presented() ||
           device_.documentInteraction().isOpen() || device_.progressOverlay().shown() ||
           !device_.application().openedUrls().empty() || !device_.audioSession().recordings().empty();
  }
};

TEST_F(HiddenScreenTest, IsDeclinedWhateverItsPageWantsToOpen) {
  for (const bool covered : {true, false}) {
    SCOPED_TRACE(covered ? "covered" : "gone");
    hide(covered);
    log_.take();
    for (const auto* name : {"openCamera", "openPhotoLibraryPicker", "openDocumentPicker", "recording"}) post(name);
    for (const auto* name : {"openUrl", "openFile"}) ask(name, R"("https://shop.example/a.pdf")");
    page().openWindow("https://shop.example/");
    page().requestFiles({});
    device_.runUntilIdle();
    EXPECT_EQ(log_.take("A screen that does not show").size(), 8U);
    page().failProvisional("no network");
    page().startProvisional();
    device_.advance(11);
    EXPECT_FALSE(anythingOpened());
    if (covered) screen_->dismiss(false);
  }
}

TEST_F(HiddenScreenTest, TakesAlongWhatItHasOpened) {
  for (const bool covered : {true, false}) {
    SCOPED_TRACE(covered ? "covered" : "gone");
    for (const auto* name : {"openCamera", "openPhotoLibraryPicker", "openDocumentPicker"}) post(name);
    ask("openFile", R"("https://shop.example/a.pdf")");
    EXPECT_TRUE(device_.camera().presented() && device_.photoLibrary().shown() &&
                device_.documentPicker().presented() && device_.documentInteraction().isOpen());
    hide(covered);
    EXPECT_FALSE(anythingOpened());
    if (covered) screen_->dismiss(false);
    device_.runUntilIdle();
  }
}

TEST_F(HiddenScreenTest, NeitherUploadsNorShowsNorKeepsWhatComesTooLate) {
  serveUploads(VirtualUploadReply::respond(503, "", 2));
  post("openDocumentPicker");
  device_.documentPicker().pick({file("a.pdf")});
  hide(true);
  EXPECT_TRUE(device_.httpClient().uploads().empty()) << "a document was chosen as the screen left";
  screen_->dismiss(false);
  post("openDocumentPicker");
  device_.documentPicker().pick({file("a.pdf")});
  device_.runUntilIdle();
  ASSERT_EQ(device_.httpClient().uploads().size(), 1U);
  EXPECT_TRUE(device_.progressOverlay().shown());
  hide(false);
  EXPECT_FALSE(device_.progressOverlay().shown());
  device_.advance(5);
  EXPECT_FALSE(anythingOpened()) << "the failure of an upload is told over the host";
}

TEST_F(HiddenScreenTest, OffersNothingAgain) {
  serveUploads(VirtualUploadReply::respond(503, "x", 1));
  const auto fail = [&] {
    post("openDocumentPicker");
    device_.documentPicker().pick({file("a.pdf")});
    device_.runUntilIdle();
  };
  for (const bool covered : {true, false}) {
    SCOPED_TRACE(covered ? "covered" : "gone");
    fail();
    device_.advance(5);
    EXPECT_TRUE(device_.progressOverlay().offered());
    fail();
    hide(covered);
    device_.advance(5);
    EXPECT_FALSE(device_.progressOverlay().offered());
    if (covered) screen_->dismiss(false);
    device_.runUntilIdle();
  }
}

TEST_F(HiddenScreenTest, EndsTheQuestionAndTheRecordingOfAScreenThatIsCoveredByAnotherChat) {
  post("recording");
  ASSERT_EQ(device_.audioSession().recordings().size(), 1U);
  const auto second = started();
  screen_->present(second, false);
  device_.runUntilIdle();
  EXPECT_FALSE(device_.audioSession().recordings()[0]->recording);
  second->dismiss(false);
  device_.recordPermission().forget();
  post("recording");
  hide(false);
  device_.recordPermission().answer(true);
  device_.advance(1);
  EXPECT_EQ(device_.audioSession().recordings().size(), 1U);
  EXPECT_FALSE(VoiceManager::shared().isRecordingAllowed) << "an answer came from a screen that had left";
}

}  // namespace
}  // namespace orivex::testing
