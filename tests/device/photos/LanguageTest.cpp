#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

#include "PhotoStage.h"
#include "support/Widgets.h"

#include "orivex/platform/base/Language.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {
namespace {

class LanguageTest : public ::testing::Test, protected PhotoStage {
 protected:
  LanguageTest() { setLanguage("en"); }
  ~LanguageTest() override { setLanguage("zh"); }

  /// The Chinese texts in the window, shown or not.
  std::string chinese() {
    std::string found;
    findBelow(GTK_WIDGET(visitor_.window()), [&](GtkWidget* widget) {
      const char* const tip = gtk_widget_get_tooltip_text(widget);
      const std::string text =
          (GTK_IS_LABEL(widget) ? gtk_label_get_text(GTK_LABEL(widget)) : "") + std::string(tip ? tip : "");
      const auto characters = codePoints(text);
      if (std::any_of(characters.begin(), characters.end(), [](char32_t c) { return c >= 0x3000; }))
        found += text + "\n";
      return false;
    });
    return found;
  }
};

TEST_F(LanguageTest, ThePhotoSheetIsEnglish) {
  fill(2);
  open();
  clickCircle("p01.jpg");
  EXPECT_TRUE(reads("Done (1)"));
  EXPECT_TRUE(reads("Recent"));
  EXPECT_TRUE(reads("Cancel"));
  EXPECT_EQ(chinese(), "");
  clickCircle("clip.mp4");
  EXPECT_TRUE(reads("Photos and videos cannot be selected together"));
  clickPicture("p02.jpg");
  EXPECT_TRUE(reads("3 / 3"));
  EXPECT_EQ(chinese(), "");
}

TEST_F(LanguageTest, TheCameraIsEnglish) {
  g_setenv("ORIVEX_CAMERA_SOURCE", "videotestsrc is-live=true ! video/x-raw,width=320,height=240,framerate=10/1", TRUE);
  std::optional<CameraOutcome> outcome;
  Platform::current().camera.present({}, *view(), [&](CameraOutcome came) { outcome = std::move(came); });
  EXPECT_TRUE(reads("Tap for photo, hold for video"));
  EXPECT_EQ(chinese(), "");
  VisitorWindow::press({"Escape"});
  EXPECT_TRUE(wait([&] { return outcome.has_value(); }, 10));
}

}  // namespace
}  // namespace orivex::gtk
