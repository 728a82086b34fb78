#include "Bundles.h"
#include "Desktop.h"
#include "DesktopLauncher.h"
#include "support/LogLines.h"

namespace orivex::gtk {
namespace {

Url url(const char* text) {
  return *Url::parse(text);
}

TEST(DesktopTest, OnlyWhatLeadsOutOfTheDeviceCanBeOpenedWhenAnApplicationTakesIt) {
  DesktopLauncher launcher;
  const struct {
    Url address;
    bool openable;
  } cases[] = {
      {url("https://example.org/"), true},
      {url("MAILTO:a@example.org?subject=x"), true},
      {url("mailto:a@example.org?attach=/etc/passwd"), false},
      {url("mailto:a@example.org?cc=b&%41ttachment=/etc/passwd"), false},
      {url("tel:1"), false},  // nobody takes it here
      {url("shop://order"), false},
      {url("/relative"), false},
      {desktop.file("bill.pdf"), false},
  };
  for (const auto& row : cases) EXPECT_EQ(launcher.canOpen(row.address), row.openable) << row.address.absoluteString();
  for (const char* address : {"file:///tmp/bill.pdf", "FILE:///etc/passwd", "javascript:alert(1)", "data:text/html,x",
                              "blob:https://a.example/1", "about:blank", "view-source:https://a.example",
                              "ftp://a.example/", "smb://a.example/", "ssh://a.example", "webcal://a.example", "apt:sl",
                              "intent://a#Intent;end", "ms-msdt:/id", "vscode://file/etc", "x-scheme-handler:x"}) {
    const LogLines lines;
    DesktopLauncher().open(url(address));
    EXPECT_EQ(lines.count("An address was not opened"), 1) << address;
  }
  launcher.allow("shop");
  EXPECT_TRUE(launcher.canOpen(url("shop://order")));
}

TEST(DesktopTest, OpeningHandsTheWholeAddressToTheApplicationOnceASecond) {
  DesktopLauncher launcher;
  const LogLines lines;
  for (int i = 0; i < 3; ++i) launcher.open(url("https://example.org/a%20b?c=%E4%BD%A0&d=e#f"));
  EXPECT_EQ(desktop.waitForOpened(), "browser https://example.org/a%20b?c=%E4%BD%A0&d=e#f ");
  EXPECT_EQ(lines.count("An address was not opened"), 2);
  pass(1);
  launcher.open(url("mailto:a@example.org"));
  EXPECT_EQ(desktop.waitForOpened(), "mail mailto:a@example.org ");
}

TEST(DesktopTest, AnAddressThatNobodyOpensIsOneLogLine) {
  const LogLines lines;
  DesktopLauncher().open(url("geo:1,2"));
  EXPECT_TRUE(wait([&] { return !lines.get().empty(); }, 10));
  EXPECT_EQ(lines.get().size(), 1U);
}

TEST(DesktopTest, TheHostIsNamedByItsDesktopEntryOrItsProgramOrItself) {
  const auto informationOf = [](const char* program, const char* applicationId) {
    g_set_prgname(program);
    return *DesktopEntryBundle(applicationId).infoDictionary();
  };
  const InfoDictionary::value_type shop{"CFBundleDisplayName", "商店"};  // in the visitor's language
  EXPECT_EQ(informationOf("shop", "org.example.Shop"),
            (InfoDictionary{shop, {"CFBundleName", "shop"}, {"CFBundleIdentifier", "org.example.Shop"}}));
  EXPECT_EQ(informationOf("org.example.Shop", ""), (InfoDictionary{shop, {"CFBundleName", "org.example.Shop"}}));
  EXPECT_EQ(informationOf("kiosk", ""), (InfoDictionary{{"CFBundleName", "kiosk"}}));
  g_set_application_name("Kiosk at the Door");
  EXPECT_EQ(informationOf("kiosk", ""),
            (InfoDictionary{{"CFBundleDisplayName", "Kiosk at the Door"}, {"CFBundleName", "kiosk"}}));
}

}  // namespace
}  // namespace orivex::gtk
