#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "files/GtkDocumentPicker.h"
#include "glib/GRef.h"
#include "support/FileChooser.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/Processes.h"
#include "support/TemporaryFolder.h"
#include "support/Visitor.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Documents.h"

namespace orivex::gtk {
namespace {

class GtkDocumentPickerTest : public ::testing::Test {
 protected:
  DocumentPicker& picker() { return Platform::current().documentPicker; }

  void present(const DocumentPickerOptions& options = {}) {
    picker().present(options, *visitor_.view(), [answers = answers_](const DocumentPickerOutcome&) { ++*answers; });
  }
  static std::string chooserFolder() {
    wait([] { return !fileChooserFolder().empty(); }, 5);
    return fileChooserFolder();
  }

  const TemporaryFolder folder_;
  VisitorWindow visitor_;
  const std::shared_ptr<int> answers_ = std::make_shared<int>(0);  // an answer may come after the test
};

TEST_F(GtkDocumentPickerTest, TheWindowsEndClosesTheChooserWithoutAnAnswer) {
  present();
  ASSERT_TRUE(openFileChooser());
  visitor_.destroy();
  EXPECT_TRUE(wait([] { return !openFileChooser(); }, 5));
  const LogLines log;
  present();
  EXPECT_FALSE(openFileChooser()) << "without a window";
  pass(0.2);
  EXPECT_EQ(*answers_, 0);
}

TEST_F(GtkDocumentPickerTest, ItOpensInTheFolderOfTheLastChoice) {
  const auto file = folder_.write("chosen/a.txt", "x");
  present();
  ASSERT_TRUE(chooseFile(file));
  EXPECT_TRUE(wait([&] { return *answers_ == 1; }, 5));
  present();
  EXPECT_EQ(chooserFolder(), (folder_.path() / "chosen").string());
  cancelFileChooser();
  EXPECT_TRUE(wait([&] { return *answers_ == 2; }, 5));
  std::filesystem::remove_all(folder_.path() / "chosen");
  present();
  EXPECT_NE(chooserFolder(), (folder_.path() / "chosen").string()) << "the folder has gone";
  cancelFileChooser();
}

TEST_F(GtkDocumentPickerTest, TheRequestedTypesAreOfferedFirstAndAllFilesSecond) {
  present({{"application/pdf", "image/*"}});
  ASSERT_TRUE(openFileChooser());
  EXPECT_EQ(fileChooserFilters(), (std::vector<std::string>{"PDF、图片", "所有文件"}));
  cancelFileChooser();
}

TEST_F(GtkDocumentPickerTest, FiltersAreNamedByWhatVisitorsCallTheFiles) {
  struct Row {
    std::vector<std::string> types;
    std::string name;  // empty: every file is offered
  };
  const std::string word = "application/vnd.openxmlformats-officedocument.wordprocessingml.document";
  for (const auto& [types, name] :
       {Row{{}, ""}, Row{{"application/pdf", "*/*"}, ""}, Row{{"pdf", "/", "image/", "*/png"}, ""},
        Row{{"application/PDF", "image/png", "IMAGE/*"}, "PDF、图片"},
        Row{{"application/msword", word, ".docx"}, "Word 文档"},
        Row{{"video/mp4", "image/*", "audio/*", "text/plain"}, "视频、图片、音频等"},
        Row{{"application/x-unheard"}, "application/x-unheard type"}}) {
    const auto filters = documentFilters(types);
    EXPECT_EQ(filters.empty() ? "" : gtk_file_filter_get_name(filters.front().get()), name);
  }
  const auto filters = documentFilters({"application/pdf", "image/*"});
  const auto info = GRef<GFileInfo>::adopt(g_file_info_new());
  for (const auto& [type, isOffered] :
       {std::pair{"application/pdf", true}, std::pair{"image/webp", true}, std::pair{"text/plain", false}}) {
    g_file_info_set_content_type(info.get(), type);
    EXPECT_EQ(gtk_filter_match(GTK_FILTER(filters.front().get()), info.get()) != FALSE, isOffered) << type;
  }
}

TEST_F(GtkDocumentPickerTest, AccessHoldsTheFileOpenForAsLongAsItLives) {
  const auto file = folder_.write("a.txt", "x");
  {
    const auto access = picker().startAccess(Url::fromFilePath(file.string()));
    EXPECT_TRUE(holdsOpen(file));
  }
  EXPECT_FALSE(holdsOpen(file));
}

}  // namespace
}  // namespace orivex::gtk
