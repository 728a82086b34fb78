#include <cstdlib>
#include <filesystem>
#include <optional>

#include <gtest/gtest.h>

#include "settings/Settings.h"
#include "support/TemporaryFolder.h"

namespace orivex::demo {
namespace {

class DemoSettingsTest : public ::testing::Test {
 protected:
  // GLib looks for the folder once in a process.
  static void SetUpTestSuite() {
    folder.emplace();
    setenv("XDG_CONFIG_HOME", folder->path().c_str(), 1);
  }
  static void TearDownTestSuite() { folder.reset(); }

  void TearDown() override { std::filesystem::remove_all(folder->path() / "orivex-demo"); }

  static void remember(const char* contents) { folder->write("orivex-demo/settings.ini", contents); }

 private:
  static inline std::optional<TemporaryFolder> folder;
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
  remember("neither group nor key");
  EXPECT_EQ(loadSettings(), Settings{});
  remember("[Visit]\nKey=only-this\n");
  EXPECT_EQ(loadSettings(), Settings{.key = "only-this"});
}

}  // namespace
}  // namespace orivex::demo
