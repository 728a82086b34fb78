#include "Desktop.h"
#include "DesktopEntryBundle.h"
#include "DesktopLauncher.h"
#include "LogLines.h"

namespace orivex::gtk {
namespace {

TEST(DesktopTest, ALinkCanBeOpenedWhenAnApplicationTakesItsScheme) {
  const DesktopLauncher launcher;
  EXPECT_TRUE(launcher.canOpen(*Url::parse("https://example.org/")));
  EXPECT_TRUE(launcher.canOpen(*Url::parse("MAILTO:a@example.org")));
  EXPECT_TRUE(launcher.canOpen(desktop.file("bill.pdf")));
  EXPECT_FALSE(launcher.canOpen(desktop.file("bill.unheard", "\x01\x02")));
  EXPECT_FALSE(launcher.canOpen(*Url::parse("weixin://dl")));
  EXPECT_FALSE(launcher.canOpen(*Url::parse("/relative")));
}

TEST(DesktopTest, OpeningHandsTheWholeAddressToTheApplication) {
  const auto file = desktop.file("a bill.pdf");
  const std::pair<Url, std::string> cases[] = {
      {*Url::parse("https://example.org/a%20b?c=%E4%BD%A0&d=e#f"),
       "browser https://example.org/a%20b?c=%E4%BD%A0&d=e#f "},
      {*Url::parse("mailto:a@example.org"), "mail mailto:a@example.org "},
      {file, "usual " + *file.filePath() + " "},
  };
  for (const auto& [url, opened] : cases) {
    DesktopLauncher().open(url);
    EXPECT_EQ(desktop.waitForOpened(), opened);
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
  const InfoDictionary expected{
      {"CFBundleDisplayName", "商店"}, {"CFBundleName", "shop"}, {"CFBundleIdentifier", "org.example.Shop"}};
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
