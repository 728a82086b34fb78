#include <filesystem>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "files/XdgFileManager.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

// GLib reads the environment once per process, so each case needs one of its own.
class XdgFileManagerDeathTest : public ::testing::Test {
 protected:
  // Ends the process with 0 when a documents folder of this setting is answered with `expected`.
  void check(const std::string& userDirs, const fs::path& expected) const {
    g_setenv("HOME", folder_.path().c_str(), TRUE);
    for (const auto* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) g_unsetenv(name);
    if (!userDirs.empty()) folder_.write(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"" + userDirs + "\"\n");
    XdgFileManager files("org.example.Shop");
    const auto answer = files.documentDirectory();
    const auto path = answer ? answer->filePath().value_or("") : "";
    if (path != expected) g_printerr("%s instead of %s\n", path.c_str(), expected.c_str());
    std::exit(path == expected ? 0 : 1);
  }

  TemporaryFolder folder_;
};

TEST_F(XdgFileManagerDeathTest, FindsAFolderThatCanBeWrittenTo) {
  const auto& home = folder_.path();
  fs::create_directories(home / "Papers");
  folder_.write("plain", "a file");
  const auto data = home / ".local/share/org.example.Shop";
  const struct {
    std::string setting;
    fs::path folder;
  } cases[] = {
      {"$HOME/Papers", home / "Papers"}, {"$HOME/Missing", data}, {"$HOME/plain", data}, {"$HOME/", data}, {"", data},
  };
  for (const auto& row : cases) EXPECT_EXIT(check(row.setting, row.folder), ::testing::ExitedWithCode(0), "");
  EXPECT_TRUE(fs::is_directory(data));
  fs::remove_all(home / ".local");
  folder_.write(".local", "in the way");
  EXPECT_EXIT(check("$HOME/Missing", g_get_tmp_dir()), ::testing::ExitedWithCode(0), "");
}

TEST(XdgFileManager, RemovesFilesAndNothingElse) {
  const TemporaryFolder folder;
  XdgFileManager files("shop");
  const auto clip = folder.write("语音 1.wav", "sound");
  fs::create_directories(folder.path() / "folder");
  EXPECT_EQ(files.removeItem(Url::fromFilePath(clip.string())), std::nullopt);
  EXPECT_FALSE(fs::exists(clip));
  EXPECT_TRUE(files.removeItem(Url::fromFilePath(clip.string())));
  EXPECT_TRUE(files.removeItem(Url::fromFilePath((folder.path() / "folder").string())));
  EXPECT_TRUE(files.removeItem(*Url::parse("https://a.example/a.wav")));
  EXPECT_TRUE(fs::exists(folder.path() / "folder"));
}

}  // namespace
}  // namespace orivex::gtk
