#include <filesystem>

#include <glib.h>
#include <gtest/gtest.h>

#include "files/XdgFileManager.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

// GLib reads the environment once per process, so each case needs one of its own.
class XdgFileManagerDeathTest : public ::testing::Test {
 protected:
  // Ends the process with 0 when the folder for documents is `expected`.
  void check(const fs::path& expected) const {
    g_setenv("HOME", folder_.path().c_str(), TRUE);
    g_unsetenv("XDG_DATA_HOME");
    // A folder of the visitor's own is not used, though it is there.
    folder_.write(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
    fs::create_directories(folder_.path() / "Papers");
    XdgFileManager files("org.example.Shop");
    const auto answer = files.documentDirectory();
    const auto path = answer ? answer->filePath().value_or("") : "";
    if (path != expected) g_printerr("%s instead of %s\n", path.c_str(), expected.c_str());
    std::exit(path == expected ? 0 : 1);
  }

  TemporaryFolder folder_;
};

TEST_F(XdgFileManagerDeathTest, KeepsDocumentsInTheApplicationsOwnFolder) {
  const auto data = folder_.path() / ".local/share/orivex-sdk/org.example.Shop";
  EXPECT_EXIT(check(data), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(fs::status(data).permissions(), fs::perms::owner_all);
  fs::remove_all(folder_.path() / ".local");
  folder_.write(".local", "in the way");
  EXPECT_EXIT(check(g_get_tmp_dir()), ::testing::ExitedWithCode(0), "");
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
