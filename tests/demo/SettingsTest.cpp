#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "Settings.h"

namespace orivex::demo {
namespace {

namespace fs = std::filesystem;

class DemoSettingsTest : public ::testing::Test {
 protected:
  // GLib looks for the folder once in a process.
  static void SetUpTestSuite() {
    auto name = (fs::temp_directory_path() / "orivex-demo-settings.XXXXXX").string();
    folder = mkdtemp(name.data());
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  }
  static void TearDownTestSuite() { fs::remove_all(folder); }

  void TearDown() override { fs::remove_all(file().parent_path()); }

  static fs::path file() { return folder / "orivex-demo" / "settings.ini"; }

 private:
  static inline fs::path folder;
};

TEST_F(DemoSettingsTest, RememberEveryField) {
  const Settings settings{.server = "http://[::1]:8700/a;b",
                          .entryId = "入口 1",
                          .key = "k=#&\\n",
                          .visitorId = " spaces ",
                          .visitorName = "王小明",
                          .push = true,
                          .statusBarHeight = 47,
                          .topInset = 47.5,
                          .bottomInset = 34};
  saveSettings(settings);
  EXPECT_EQ(loadSettings(), settings);
}

TEST_F(DemoSettingsTest, AreTheDefaultsWhereNothingReadableIsRemembered) {
  EXPECT_EQ(loadSettings(), Settings{});
  fs::create_directories(file().parent_path());
  std::ofstream(file()) << "neither group nor key";
  EXPECT_EQ(loadSettings(), Settings{});
  std::ofstream(file()) << "[Visit]\nKey=only-this\n";
  EXPECT_EQ(loadSettings(), Settings{.key = "only-this"});
}

}  // namespace
}  // namespace orivex::demo
