#include <iterator>

#include "PickingTest.h"

#include "orivex/platform/base/Language.h"
#include "orivex/platform/ui/ContentViews.h"
#include "orivex/voice/RecordingView.h"

namespace orivex::testing {
namespace {

/// A chat with the component's own English texts.
class LanguageTest : public PickingTest {
 protected:
  LanguageTest() {
    std::ifstream file(ORIVEX_ENGLISH, std::ios::binary);
    const std::string texts{std::istreambuf_iterator<char>(file), {}};
    device_.componentBundle().addResource("locale/en", "mo", texts);
    setLanguage("en");
  }

  /// What the overlay tells the visitor half a second after `act`.
  template <class Act>
  std::string toldAfter(const Act& act) {
    answersTo(act);
    const auto shown = device_.progressOverlay().shown();
    device_.advance(10);
    return shown ? shown->status : "nothing";
  }
};

TEST_F(LanguageTest, PickingUploadPageAndCameraSpeakEnglish) {
  const auto pick = [&](const std::string& path) {
    return toldAfter([&] {
      ask("openDocumentPicker", R"({"deviceId":"visitor","fileSize":2097152})");
      device_.documentPicker().pick({path});
    });
  };
  EXPECT_EQ(pick(file("large.pdf", 2097153)), "The file must not be larger than 2 MB");
  EXPECT_EQ(pick("/no/%1.pdf"), "Invalid path: /no/%1.pdf");
  device_.httpClient().setUploadServer([](const auto&) { return VirtualUploadReply::fail("no network"); });
  EXPECT_EQ(pick(file("a.pdf")), "Unknown error");
  EXPECT_EQ(device_.progressOverlay().offered()->status, "1 item was not sent: no network");
  device_.httpClient().setUploadServer([](const auto&) { return VirtualUploadReply::respond(503, "{}"); });
  EXPECT_EQ(pick(file("b.pdf")), "The service is not available");
  EXPECT_EQ(device_.progressOverlay().offered()->status, "2 items were not sent");
  device_.httpClient().setUploadServer(
      [](const auto&) { return VirtualUploadReply::respond(400, R"({"msg":"不支持的文件"})"); });
  EXPECT_EQ(pick(file("c.pdf")), "不支持的文件") << "the server's own words";

  EXPECT_EQ(toldAfter([&] {
              ask("openCamera");
              device_.camera().finish(CameraFailure::busy);
            }),
            "The camera is in use by another application");
  EXPECT_EQ(toldAfter([&] {
              device_.httpClient().setServer([](const auto&) { return VirtualReply::respond(401); });
              presentInSecond();
            }),
            "The token is invalid or has expired");
}

TEST_F(LanguageTest, RecordingSpeaksEnglish) {
  const std::pair<RecordingState, const char*> captions[] = {
      {RecordingState::volumn, "Slide up to cancel"},
      {RecordingState::cancel, "Release to cancel"},
      {RecordingState::timeTooShort, "Too short"},
  };
  const auto view = RecordingView::make();
  for (const auto& [state, caption] : captions) {
    view->setRecordingState(state);
    EXPECT_EQ(dynamic_cast<Label&>(*view->subviews().back()).text(), caption);
  }
}

}  // namespace
}  // namespace orivex::testing
