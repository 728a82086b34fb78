#include <fstream>
#include <sstream>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "../GtkFixture.h"
#include "DesktopEntryBundle.h"
#include "DesktopLauncher.h"
#include "LogLines.h"
#include "TemporaryFolder.h"

namespace orivex::gtk {
namespace {

// A desktop of the tests' own: GLib reads these folders from the environment once, at its first question.
class Desktop : public ::testing::Environment {
 public:
  void SetUp() override {
    folder_ = std::make_unique<TemporaryFolder>();
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
      g_setenv(name, folder_->path().c_str(), TRUE);
    }
    g_setenv("LANGUAGE", "zh_CN", TRUE);
    const auto opener =
        folder_->write("opener", "#!/bin/sh\nprintf %s \"$1\" > \"$0.got.part\"\nmv \"$0.got.part\" \"$0.got\"\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    folder_->write("applications/org.example.Opener.desktop",
                   "[Desktop Entry]\nType=Application\nName=Opener\nExec=" + opener.string() +
                       " %u\nMimeType=x-scheme-handler/https;x-scheme-handler/tel;text/x-orivex;\n");
    folder_->write("applications/org.example.Shop.desktop",
                   "[Desktop Entry]\nType=Application\nName=Shop\nName[zh_CN]=\xE5\x95\x86\xE5\xBA\x97\nExec=true\n");
    folder_->write("mimeapps.list",
                   "[Default Applications]\nx-scheme-handler/https=org.example.Opener.desktop\n"
                   "x-scheme-handler/tel=org.example.Opener.desktop\ntext/x-orivex=org.example.Opener.desktop\n");
    folder_->write("mime/globs2", "50:text/x-orivex:*.orivex\n");
    got_ = opener.string() + ".got";
  }
  void TearDown() override { folder_.reset(); }

  const TemporaryFolder& folder() const { return *folder_; }

  /// The address that the opener was last given.
  std::optional<std::string> takeOpened() const {
    std::ifstream file(got_);
    if (!file) return std::nullopt;
    std::stringstream text;
    text << file.rdbuf();
    std::filesystem::remove(got_);
    return text.str();
  }

 private:
  std::unique_ptr<TemporaryFolder> folder_;
  std::string got_;
};

auto& desktop = *static_cast<Desktop*>(::testing::AddGlobalTestEnvironment(std::make_unique<Desktop>().release()));

TEST(DesktopTest, ALinkCanBeOpenedWhenAnApplicationTakesItsScheme) {
  const DesktopLauncher launcher;
  const auto known = Url::fromFilePath(desktop.folder().write("note.orivex", "x").string());
  const auto unknown = Url::fromFilePath(desktop.folder().write("note.unheard", "\x01\x02").string());
  EXPECT_TRUE(launcher.canOpen(*Url::parse("https://example.org/")));
  EXPECT_TRUE(launcher.canOpen(*Url::parse("TEL:+4930123")));
  EXPECT_TRUE(launcher.canOpen(known));
  EXPECT_FALSE(launcher.canOpen(unknown));
  EXPECT_FALSE(launcher.canOpen(*Url::parse("weixin://dl")));
  EXPECT_FALSE(launcher.canOpen(*Url::parse("/relative")));
}

TEST(DesktopTest, OpeningHandsTheWholeAddressToTheApplication) {
  const DesktopLauncher launcher;
  const auto file = desktop.folder().write("a note.orivex", "x").string();
  struct Case {
    Url url;
    std::string opened;
  };
  for (const auto& [url, expected] :
       {Case{*Url::parse("https://example.org/a%20b?c=%E4%BD%A0&d=e#f"), "https://example.org/a%20b?c=%E4%BD%A0&d=e#f"},
        Case{*Url::parse("tel:+4930123"), "tel:+4930123"}, Case{Url::fromFilePath(file), file}}) {
    SCOPED_TRACE(url.absoluteString());
    std::optional<std::string> opened;
    launcher.open(url);
    EXPECT_TRUE(wait([&] { return (opened = desktop.takeOpened()).has_value(); }, 10));
    EXPECT_EQ(opened, expected);
  }
}

TEST(DesktopTest, AnAddressThatNobodyOpensIsOneLogLine) {
  const LogLines lines;
  DesktopLauncher().open(*Url::parse("weixin://dl"));
  EXPECT_TRUE(wait([&] { return !lines.get().empty(); }, 10));
  EXPECT_EQ(lines.get().size(), 1U);
}

TEST(DesktopTest, TheHostIsNamedByItsDesktopEntryInTheVisitorsLanguage) {
  g_set_prgname("shop");
  const InfoDictionary expected{{"CFBundleDisplayName", "\xE5\x95\x86\xE5\xBA\x97"},
                                {"CFBundleName", "shop"},
                                {"CFBundleIdentifier", "org.example.Shop"}};
  EXPECT_EQ(DesktopEntryBundle("org.example.Shop").infoDictionary(), expected);
}

TEST(DesktopTest, AHostWithoutADesktopEntryIsNamedByItselfOrItsProgram) {
  g_set_prgname("kiosk");
  EXPECT_EQ(DesktopEntryBundle("").infoDictionary(), (InfoDictionary{{"CFBundleName", "kiosk"}}));
  g_set_application_name("Kiosk at the Door");
  EXPECT_EQ(DesktopEntryBundle("").infoDictionary(),
            (InfoDictionary{{"CFBundleDisplayName", "Kiosk at the Door"}, {"CFBundleName", "kiosk"}}));
}

}  // namespace
}  // namespace orivex::gtk
