#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "device/photos/FakeMedia.h"
#include "support/TemporaryFolder.h"
#include "support/VideoFiles.h"
#include "support/Visitor.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 20;

/// An application outside the sandbox that opens everything, and what it was started with.
class Opener {
 public:
  explicit Opener(const TemporaryFolder& folder) {
    const auto program =
        folder.write("opener", "#!/bin/sh\nprintf %s \"$1\" >\"$0.part\"\nmv \"$0.part\" \"$0.got\"\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    got_ = program.string() + ".got";
    const auto applications = std::filesystem::path(g_get_user_data_dir()) / "applications";
    std::filesystem::create_directories(applications);
    std::ofstream(applications / "org.example.Opener.desktop")
        << "[Desktop Entry]\nType=Application\nName=Opener\nExec=" << program.string() << " %u\n";
    std::ofstream(applications / "mimeapps.list")
        << "[Default Applications]\nx-scheme-handler/https=org.example.Opener.desktop\n"
           "[Added Associations]\ntext/plain=org.example.Opener.desktop\n";
  }

  std::string waitForOpened() const {
    EXPECT_TRUE(wait([&] { return std::filesystem::exists(got_); }, patience));
    return contentsOf(got_);
  }

 private:
  std::filesystem::path got_;
};

class SandboxedHostTest : public ::testing::Test {
 protected:
  /// Waits for the desktop's own window.
  void waitForDesktop() {
    ASSERT_TRUE(wait([&] { return !isInFront(); }, patience)) << "the desktop does not ask";
    pass(1);  // it does not tell when it has read its folder
  }
  /// Confirms what the desktop's window has selected, once it takes that.
  void confirm() {
    for (int tries = 0; tries < 10 && !isInFront(); ++tries) {
      hands({"key", "Return"});
      pass(1);
    }
    EXPECT_TRUE(isInFront());
  }
  bool isInFront() const { return gtk_window_is_active(visitor_.window()) != FALSE; }
  void clickText(const std::string& text) {
    GtkWidget* found = nullptr;
    ASSERT_TRUE(wait([&] { return (found = findByText(GTK_WIDGET(visitor_.overlay()), text)); }, patience)) << text;
    pass(0.6);
    visitor_.click(found);
  }

  VisitorWindow visitor_;
  const Platform& platform_ = Platform::current();
  TemporaryFolder folder_;
};

TEST_F(SandboxedHostTest, WithoutFoldersPhotosAreChosenInTheDesktopsChooserAtOnce) {
  if (contentsOf("/proc/self/mounts").find("fuse.portal") == std::string::npos)
    GTEST_SKIP() << "nothing can be lent here";
  const auto photo = std::filesystem::path(g_get_home_dir()) / "photo.png";
  std::ofstream(photo) << pictureData(64, 48, 0x4080c0ff, "png");
  int resigned = 0;
  const auto resigns = platform_.application.observe(ApplicationEvent::willResignActive, [&] { ++resigned; });
  std::optional<PhotoSelection> selected;
  platform_.photoLibrary.show({}, *visitor_.view(), [&](PhotoSelection selection) { selected = std::move(selection); });
  waitForDesktop();
  hands({"key", "ctrl+l"});
  hands({"type", photo.string()});
  confirm();
  clickText("完成(1)");
  ASSERT_TRUE(wait([&] { return selected.has_value(); }, patience));
  const auto chosen = selected->items.at(0).file.filePath().value_or("");
  EXPECT_NE(chosen, photo) << "it was not lent";
  EXPECT_EQ(contentsOf(chosen), contentsOf(photo));
  EXPECT_EQ(resigned, 0) << "the visitor was at the chooser of this application all the time";
}

TEST_F(SandboxedHostTest, ALinkOpensOutside) {
  const Opener opener(folder_);
  platform_.application.open(*Url::parse("https://example.org/a"));
  EXPECT_EQ(opener.waitForOpened(), "https://example.org/a");
}

TEST_F(SandboxedHostTest, AFileOpensInWhatTheVisitorChooses) {
  const Opener opener(folder_);
  const auto note = folder_.write("note.txt", "x");
  ASSERT_TRUE(platform_.documentInteraction.presentOptionsMenu(Url::fromFilePath(note.string()), {}, *visitor_.view()));
  waitForDesktop();
  confirm();
  EXPECT_EQ(contentsOf(opener.waitForOpened()), "x");
}

TEST_F(SandboxedHostTest, TheQuestionForTheMicrophoneIsTheApplicationsOwn) {
  platform_.recordPermission.request("小店", *visitor_.view(), [](bool) {});
  ASSERT_TRUE(openDialog());
  EXPECT_EQ(headingOf(openDialog()), "“小店”想使用麦克风");
}

}  // namespace
}  // namespace orivex::gtk
