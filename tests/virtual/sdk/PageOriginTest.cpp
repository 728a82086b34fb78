#include <algorithm>

#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

class PageOriginTest : public ChatScreenTest {
 protected:
  /// The document at `address` takes the page's place, to the end of its load or not.
  void goTo(OVKFApi& screen, const std::string& address, bool toTheEnd = true) {
    auto& page = pageOf(screen);
    page.startProvisional();
    page.commit(address);
    if (toTheEnd) page.finish();
    device_.runUntilIdle();
  }

  bool isServed(OVKFApi& screen) {
    log_.take();
    pageOf(screen).post("openDocumentPicker", R"({"deviceId":"d"})");
    device_.runUntilIdle();
    const bool opened = device_.documentPicker().presented().has_value();
    EXPECT_EQ(opened, log_.take("Declined").empty()) << "a line for what is declined, and only for that";
    if (opened) device_.documentPicker().cancel();
    return opened;
  }
};

TEST_F(PageOriginTest, OnlyTheChatsOwnDocumentsAreServed) {
  struct Visit {
    const char* address;
    bool toTheEnd;
    bool served;
  };
  const struct {
    const char* what;
    std::vector<Visit> visits;
  } cases[] = {
      {"where the server's redirect leads, and the server's own pages",
       {{"https://login.example/x", true, true}, {"https://chat.example/y", true, true}}},
      {"the server in other words", {{"HTTPS://user@CHAT.example:443/", true, true}}},
      {"a script that moves on while the first page loads",
       {{"https://chat.example/", false, true}, {"https://b.example/", true, true}}},
      {"a link to elsewhere and back",
       {{"https://chat.example/", true, true},
        {"https://evil.example/", true, false},
        {"https://chat.example/again", true, true}}},
      {"look-alikes",
       {{"https://chat.example/", true, true},
        {"http://chat.example/", true, false},
        {"https://chat.example:8443/", true, false},
        {"https://chat.example.evil.example/", true, false},
        {"https://chat.example@evil.example/", true, false}}},
      {"addresses without an origin",
       {{"https://chat.example/", true, true},
        {"about:blank", true, false},
        {"data:text/html,x", true, false},
        {"blob:https://chat.example/1", true, false}}},
      {"one that the host lists", {{"https://chat.example/", true, true}, {"https://pay.example/", true, true}}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    const auto screen = present();
    screen->allowedOrigins = {"https://PAY.example/"};
    device_.runUntilIdle();
    for (const auto& visit : row.visits) {
      goTo(*screen, visit.address, visit.toTheEnd);
      EXPECT_EQ(isServed(*screen), visit.served) << visit.address;
    }
    hostStack_->dismiss(false);
    device_.runUntilIdle();
  }
}

TEST_F(PageOriginTest, OnlyTheChatsOwnDocumentsAreToldOfTheirSurroundings) {
  const auto screen = present();
  screen->allowedOrigins = {"https://PAY.example/", "no address"};
  device_.runUntilIdle();
  const auto& page = pageOf(*screen);
  goTo(*screen, "https://login.example/x", false);
  EXPECT_FALSE(page.userScriptOrigins()) << "a redirect may still lead on";
  goTo(*screen, "https://chat.example:8443/");
  const Lines own{"https://chat.example", "https://login.example", "https://chat.example:8443", "https://pay.example"};
  EXPECT_EQ(page.userScriptOrigins(), own);
  goTo(*screen, "https://evil.example/");
  EXPECT_EQ(page.userScriptOrigins(), own);
}

TEST_F(PageOriginTest, AForeignPageCanOpenLinksAnnounceItselfAndGoBack) {
  const auto screen = presentChecked();
  goTo(*screen, "https://chat.example/");
  goTo(*screen, "https://evil.example/");
  auto& page = pageOf(*screen);
  page.post("openUrl", R"("https://shop.example/")");
  page.post("initLoaded", "null");
  device_.advance(1);
  EXPECT_EQ(device_.application().openedUrls().size(), 1U);
  EXPECT_TRUE(screen->isLoaded());
  page.post("goBack", "null");
  device_.advance(1);
  EXPECT_FALSE(screen->isViewInWindow());
}

TEST_F(PageOriginTest, AnAnswerReachesOnlyTheOriginThatAsked) {
  const auto screen = presentChecked();
  device_.imageCodec().put("/p.jpg", {"p", {1, 1}});
  const auto answers = [&] {
    const auto& scripts = pageOf(*screen).scripts();
    return std::count_if(scripts.begin(), scripts.end(),
                         [](const auto& script) { return script.starts_with("handle"); });
  };
  for (const auto& [address, expected] :
       {std::pair{"https://evil.example/", std::ptrdiff_t{0}}, {"https://chat.example/reloaded", 1}}) {
    goTo(*screen, "https://chat.example/");
    pageOf(*screen).post("openPhotoLibraryPicker", R"({"deviceId":"d"})");
    device_.runUntilIdle();
    goTo(*screen, address);
    device_.photoLibrary().select({{{MediaType::image, Url::fromFilePath("/p.jpg")}}});
    device_.runUntilIdle();
    EXPECT_EQ(answers(), expected) << address;
    EXPECT_EQ(log_.take("An answer for https://chat.example was dropped").size(),
              static_cast<std::size_t>(1 - expected));
  }
}

}  // namespace
}  // namespace orivex::testing
