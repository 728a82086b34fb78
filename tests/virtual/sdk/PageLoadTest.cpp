#include "ChatScreenTest.h"

#include "orivex/media/ChatManager.h"
#include "orivex/media/OVKFApiHelper.h"

namespace orivex::testing {
namespace {

class PageLoadTest : public ChatScreenTest {
 protected:
  void serve(const VirtualReply& reply) {
    device_.httpClient().setServer([reply](const UrlRequest&) { return reply; });
  }
};

TEST_F(PageLoadTest, ChecksThePageOnceAndLoadsTheRequestItChecked) {
  const auto target = *Url::parse("https://elsewhere.example/chat");
  device_.httpClient().setServer([target](const UrlRequest& request) {
    return request.url == target ? VirtualReply::respond(200) : VirtualReply::redirect(target, 0.5);
  });
  const auto screen = present();
  device_.advance(1);
  const std::vector<UrlRequest> expected{
      {*ChatManager::shared().instanceURL, 5.0, {{"User-Agent", OVKFApiHelper::userAgent()}}}};
  EXPECT_EQ(device_.httpClient().requests(), expected);
  EXPECT_EQ(pageOf(*screen).loads(), expected);
}

TEST_F(PageLoadTest, LoadsThePageOrSaysWhyAndCloses) {
  const std::string token = "令牌无效或者已过期";
  const auto status = [](int code) { return VirtualReply::respond(code, 0.5); };
  const struct {
    const char* what;
    VirtualReply reply;
    double answered;
    std::string message;  // empty: the page is loaded
    Lines log;
  } cases[] = {
      {"200", status(200), 0.5, "", {"\"请求成功\"", "\"Response Status Code: 200\""}},
      {"399", status(399), 0.5, "", {"\"请求成功\"", "\"Response Status Code: 399\""}},
      {"400", status(400), 0.5, token, {"\"请求成功\"", "\"Response Status Code: 400\""}},
      {"599", status(599), 0.5, token, {"\"请求成功\"", "\"Response Status Code: 599\""}},
      {"600", status(600), 0.5, "", {"\"请求成功\"", "\"Response Status Code: 600\""}},
      {"silence", VirtualReply::never(), 5, "服务请求超时", {"\"请求超时\""}},
      {"an answer too late", VirtualReply::respond(200, 5.5), 5, "服务请求超时", {"\"请求超时\""}},
      {"refused",
       VirtualReply::fail("Connection refused", 0.5),
       0.5,
       "请求失败,请稍后重试",
       {"\"请求失败：Connection refused\""}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    serve(row.reply);
    for (const bool presented : {true, false}) {
      const auto screen = presented ? present() : push();
      log_.take();
      device_.advance(row.answered - 0.001);
      EXPECT_EQ(log_.take(), Lines{});
      EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);
      device_.advance(0.001);
      auto log = log_.take();
      EXPECT_EQ(log.size(), row.log.size() + (row.message.empty() ? 0 : 1));  // a line for support
      log.resize(row.log.size());
      EXPECT_EQ(log, row.log);
      EXPECT_EQ(pageOf(*screen).loads().size(), row.message.empty() ? 1U : 0U);
      if (row.message.empty()) {
        EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);
        device_.advance(30);
        EXPECT_TRUE(screen->isViewInWindow());
      } else {
        EXPECT_EQ(device_.progressOverlay().shown(),
                  (VirtualProgressOverlay::Panel{VirtualProgressOverlay::Kind::info, row.message}));
        device_.advance(1.999);
        EXPECT_NE(device_.progressOverlay().shown(), std::nullopt);
        EXPECT_EQ(presented ? screen->presentingViewController() : screen->navigationController(), hostStack_.get());
        device_.advance(0.001);
        EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);
        EXPECT_EQ(screen->presentingViewController(), nullptr);
        EXPECT_EQ(screen->navigationController(), nullptr);
        EXPECT_TRUE(screen->isViewInWindow());  // it slides away
        device_.advance(0.35);
        EXPECT_FALSE(screen->isViewInWindow());
      }
      hostStack_->dismiss(false);
      hostStack_->popViewController(false);
    }
  }
}

TEST_F(PageLoadTest, LeavesAVisitorAloneWhoHasGoneBeforeTheAnswer) {
  for (const auto& reply : {VirtualReply::respond(200, 3), VirtualReply::respond(404, 3), VirtualReply::never()}) {
    serve(reply);
    std::weak_ptr<OVKFApi> gone = present();
    hostStack_->dismiss(true);
    device_.advance(2);
    EXPECT_TRUE(gone.expired());
    device_.advance(10);
    EXPECT_EQ(overlayStory(), Lines{});
    EXPECT_TRUE(device_.webEngines().engines().empty());
  }
}

TEST_F(PageLoadTest, TriesAgainWhenAScreenWithoutAPageIsShownAgain) {
  serve(VirtualReply::respond(404));
  const auto screen = present();
  device_.advance(3);
  ASSERT_FALSE(screen->isViewInWindow());
  serve(VirtualReply::respond(200));
  hostStack_->present(screen, false);
  device_.runUntilIdle();
  EXPECT_EQ(pageOf(*screen).loads().size(), 1U);
}

TEST_F(PageLoadTest, ClosesNothingElseWhenTheVisitorWasFasterOrAnotherScreenCoversIt) {
  serve(VirtualReply::respond(404));
  for (const bool covered : {false, true}) {
    std::weak_ptr<OVKFApi> failed = push();
    device_.advance(1);
    if (!covered) hostStack_->popViewController(false);
    const auto another = std::make_shared<ViewController>();
    hostStack_->pushViewController(another, covered);
    EXPECT_FALSE(failed.expired());
    device_.advance(5);
    EXPECT_EQ(failed.expired(), !covered);
    EXPECT_EQ(hostStack_->topViewController(), another);
  }
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows 令牌无效或者已过期", "2.0 hides 令牌无效或者已过期",
                                   "6.0 shows 令牌无效或者已过期", "8.0 hides 令牌无效或者已过期"}));
}

TEST_F(PageLoadTest, AScreenThatIsPresentedOverAFailedChatStays) {
  serve(VirtualReply::respond(404));
  const auto failed = push();
  device_.advance(1);
  const auto another = std::make_shared<ViewController>();
  hostStack_->present(another, false);
  device_.advance(5);
  EXPECT_EQ(hostStack_->presentedViewController(), another);
}

}  // namespace
}  // namespace orivex::testing
