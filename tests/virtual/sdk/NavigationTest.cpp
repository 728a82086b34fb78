#include "ChatScreenTest.h"

namespace orivex::testing {
namespace {

constexpr const char* timedOut = "服务请求超时";
constexpr const char* failed = "请求失败,请稍后重试";

using NavigationTest = ChatScreenTest;

TEST_F(NavigationTest, TellsASlowOrFailedLoad) {
  struct Event {
    double time;
    void (*act)(VirtualWebEngine&);
  };
  const auto start = [](VirtualWebEngine& page) { page.startProvisional(); };
  const auto finish = [](VirtualWebEngine& page) { page.finish(); };
  const auto announce = [](VirtualWebEngine& page) { page.post("initLoaded", "null"); };
  const auto failProvisional = [](VirtualWebEngine& page) { page.failProvisional("unreachable"); };
  const auto fail = [](VirtualWebEngine& page) { page.fail("broken off"); };
  const auto shows = [](const char* time, const char* text) { return std::string(time) + " shows " + text; };
  const auto hides = [](const char* time, const char* text) { return std::string(time) + " hides " + text; };
  const struct {
    const char* what;
    std::vector<Event> events;
    Lines story;
  } cases[] = {
      {"never finishes", {{1, start}}, {shows("11.0", timedOut), hides("13.0", timedOut)}},
      {"once for each start",
       {{1, start}, {4, start}},
       {shows("11.0", timedOut), hides("13.0", timedOut), shows("14.0", timedOut), hides("16.0", timedOut)}},
      {"finishes in time", {{1, start}, {6.5, finish}}, {}},
      {"finishes in time, but is not revealed yet at the check",
       {{1, start}, {7.5, finish}},
       {shows("11.0", timedOut), hides("13.0", timedOut)}},
      {"announces itself in time", {{1, start}, {10.5, announce}}, {}},
      {"a later navigation of a revealed page", {{1, start}, {2, announce}, {3, start}}, {}},
      {"fails before it committed",
       {{1, start}, {2, failProvisional}},
       {shows("2.0", failed), hides("4.0", failed), shows("11.0", timedOut), hides("13.0", timedOut)}},
      {"fails just before the check: the older message takes the newer one with it",
       {{1, start}, {10.5, failProvisional}},
       {shows("10.5", failed), shows("11.0", timedOut), hides("12.5", timedOut)}},
      {"fails twice",
       {{1, failProvisional}, {4, failProvisional}},
       {shows("1.0", failed), hides("3.0", failed), shows("4.0", failed), hides("6.0", failed)}},
      {"breaks off after it committed", {{1, fail}}, {}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    VirtualDevice device;  // each case from time 0
    device.application().window()->setRootViewController(std::make_shared<ViewController>());
    const auto screen = started();
    device.application().window()->rootViewController()->present(screen, false);
    for (const auto& event : row.events) {
      device.mainQueue().asyncAfter(event.time, [&event, &page = pageOf(*screen)] { event.act(page); });
    }
    device.advance(40);
    EXPECT_EQ(overlayStory(device), row.story);
    EXPECT_TRUE(screen->isViewInWindow());
    EXPECT_EQ(pageOf(*screen).reloadCount(), 0);
  }
}

TEST_F(NavigationTest, DoesNotTellAVisitorWhoHasLeftOfAPageThatNobodyWaitsFor) {
  std::weak_ptr<OVKFApi> screen = present();
  pageOf(*screen.lock()).startProvisional();
  device_.runUntilIdle();
  hostStack_->dismiss(false);
  device_.runUntilIdle();
  EXPECT_TRUE(screen.expired()) << "nothing but the watchdog is still to come";
  const auto kept = present();  // by its host
  pageOf(*kept).startProvisional();
  pageOf(*kept).failProvisional("unreachable");
  hostStack_->dismiss(false);
  device_.runUntilIdle();
  kept->webView()->load({*Url::parse("https://chat.example/"), 5, {}});
  pageOf(*kept).startProvisional();
  pageOf(*kept).redirect("http://chat.example/");
  device_.advance(20);
  EXPECT_EQ(overlayStory(device_), Lines{});
}

TEST_F(NavigationTest, LogsEachStepOfALoad) {
  const auto screen = presentChecked();
  auto& page = pageOf(*screen);
  const auto address = "\"URL: " + *page.requestedUrl() + '"';
  log_.take();
  page.startProvisional();
  page.redirect("https://chat.example/login");
  page.commit("https://chat.example/");
  page.finish();
  device_.runUntilIdle();
  auto lines = log_.take();
  ASSERT_EQ(lines.size(), 6U);
  lines.erase(lines.begin() + 3);  // of the redirect, in words of our own
  EXPECT_EQ(lines,
            (Lines{address, "\"Start Loading\"", "\"URL: https://chat.example/login\"", "\"Loading\"", "\"Loaded\""}));

  page.failProvisional("no route");
  page.fail("cut");
  device_.runUntilIdle();
  lines = log_.take();
  ASSERT_EQ(lines.size(), 3U);  // the second for the host
  EXPECT_NE(lines[0].find("no route"), std::string::npos);
  EXPECT_NE(lines[2].find("cut"), std::string::npos);
}

TEST_F(NavigationTest, LetsThePageGoAnywhere) {
  const auto screen = presentChecked();
  auto& page = pageOf(*screen);
  for (const auto* address : {"mailto:a@b.example", "file:///etc/hosts", "tel:1", "weixin://pay", "about:blank"}) {
    const auto before = page.scripts().size();
    screen->webView()->load({*Url::parse(address), 60, {}});
    page.completeLoad();
    device_.runUntilIdle();
    ASSERT_EQ(page.scripts().size(), before + 1) << address;
    EXPECT_EQ(screen->webView()->url(), address);
  }
  EXPECT_TRUE(device_.application().openedUrls().empty());
}

TEST_F(NavigationTest, AFirstLoadThatIsLedOutOfHttpsEnds) {
  const auto screen = presentChecked();
  auto& page = pageOf(*screen);
  const auto messageAfterRedirect = [&](const std::string& from, const std::string& to) {
    screen->webView()->load({*Url::parse(from), 5, {}});
    page.startProvisional();
    page.redirect(to);
    device_.advance(1);
    const auto shown = device_.progressOverlay().shown();
    device_.advance(5);
    return shown ? shown->status : "";
  };
  EXPECT_EQ(messageAfterRedirect("http://chat.example/", "http://login.example/"), "") << "as the host asked for";
  EXPECT_EQ(messageAfterRedirect("https://chat.example/", "http://login.example/?token"), failed);
  page.commit("http://login.example/?token");
  device_.runUntilIdle();
  EXPECT_EQ(log_.take("\"Loading\""), Lines{});
  EXPECT_EQ(messageAfterRedirect("https://chat.example/", "https://login.example/"), "");
  page.commit("https://login.example/");
  EXPECT_EQ(messageAfterRedirect("https://login.example/", "http://elsewhere.example/"), "") << "it may go anywhere";
}

}  // namespace
}  // namespace orivex::testing
