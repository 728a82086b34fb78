#include "ChatScreenTest.h"

#include "orivex/media/ChatManager.h"
#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/ScreenEdgePanGesture.h"
#include "orivex/voice/RecordManager.h"

namespace orivex::testing {
namespace {

using ScreenSetUpTest = ChatScreenTest;

TEST_F(ScreenSetUpTest, StacksSnapshotPagePlaceholderAndRecordingOverlay) {
  const auto screen = present();
  const auto& overlay = RecordManager::shared().recordingView();
  const std::vector<std::shared_ptr<View>> expected{screen->previousViewSnapshot(), screen->webView(),
                                                    screen->loadView(), overlay};
  EXPECT_EQ(screen->view()->subviews(), expected);
  EXPECT_EQ(overlay->frame(), (Rect{135, 362, 120, 120}));
  EXPECT_EQ(screen->view()->gestures().size(), 1U);
  EXPECT_EQ(screen->view()->backgroundColor(), Color::white());
  EXPECT_EQ(screen->webView()->backgroundColor(), Color::white());
  EXPECT_FALSE(pageOf(*screen).scrollSettings().scrollEnabled);
  EXPECT_EQ(pageOf(*screen).customUserAgent(), OVKFApiHelper::userAgent());
}

TEST_F(ScreenSetUpTest, HasNoBackSwipeWithoutAPictureToShowBehind) {
  device_.application().setDrawn(false);
  const auto screen = present();
  EXPECT_TRUE(screen->view()->gestures().empty());
  EXPECT_EQ(screen->view()->subviews().front(), screen->webView());
}

TEST_F(ScreenSetUpTest, ShowsTheSkeletonPageWhileThereIsOne) {
  const auto path = *device_.componentBundle().pathForResource("skeleton", "html");
  const auto screen = present();
  const auto& placeholder = engineOf(screen->loadView());
  EXPECT_EQ(placeholder.fileLoads(), (std::vector<VirtualWebEngine::FileLoad>{{path, path}}));
  EXPECT_TRUE(placeholder.configuration().scriptMessageNames.empty());
  EXPECT_FALSE(placeholder.scrollSettings().scrollEnabled);
  EXPECT_EQ(screen->loadView()->backgroundColor(), Color::white());
  EXPECT_EQ(screen->loadView()->alpha(), 1);

  device_.componentBundle().removeResource("skeleton", "html");
  const auto without = started();
  EXPECT_TRUE(engineOf(without->loadView()).fileLoads().empty());
  EXPECT_EQ(without->loadView()->backgroundColor(), Color::white());
}

TEST_F(ScreenSetUpTest, EvaluatesTheTouchScriptFirstAndTheViewportScriptAfterEachLoad) {
  const std::string touch =
      "document.documentElement.style.webkitTouchCallout='none';document.documentElement.style.webkitUserSelect='none'"
      ";";
  const std::string viewport =
      "var oMeta = document.createElement('meta');\noMeta.content = 'width=device-width, initial-scale=1, "
      "user-scalable=0';\noMeta.name = 'viewport';\ndocument.getElementsByTagName('head')[0].appendChild(oMeta);";
  const auto screen = present();
  auto& page = pageOf(*screen);
  EXPECT_EQ(page.scripts(), Lines{touch});
  EXPECT_TRUE(page.loads().empty());
  device_.runUntilIdle();
  page.completeLoad();
  device_.runUntilIdle();
  page.completeLoad();
  device_.runUntilIdle();
  EXPECT_EQ(page.scripts(), (Lines{touch, viewport, viewport}));
}

TEST_F(ScreenSetUpTest, PlacesBothPagesAroundTheSystemsBars) {
  auto& application = device_.application();
  const struct {
    const char* what;
    double statusBar;
    double bottom;
    bool scene;
    Rect page;
    Rect placeholder;
    const char* distances;
  } cases[] = {
      {"a phone", 47, 34, true, {0, 0, 390, 925}, {0, 47, 390, 797}, "Top:47.0 safeDistanceBottom:34.0 navHeight:47.0"},
      {"no bars", 0, 0, true, {0, 0, 390, 844}, {0, 0, 390, 844}, "Top:47.0 safeDistanceBottom:0.0 navHeight:0.0"},
      {"no scene", 47, 34, false, {}, {}, "Top:0.0 safeDistanceBottom:0.0 navHeight:0.0"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    application.setStatusBarHeight(row.statusBar);
    application.window()->setSafeAreaInsets({.top = 47, .left = 0, .bottom = row.bottom, .right = 0});
    application.setSceneConnected(row.scene);
    const auto screen = started();
    log_.take();
    screen->view();
    EXPECT_EQ(screen->webView()->frame(), row.page);
    EXPECT_EQ(screen->loadView()->frame(), row.placeholder);
    EXPECT_EQ(log_.take("\"Distance"), Lines{"\"Distance: safeDistance" + std::string(row.distances) + '"'});
  }
}

TEST_F(ScreenSetUpTest, FollowsItsWindowWhileItShows) {
  for (const auto& screen : {present(), started()}) {
    if (!screen->isViewLoaded()) {
      hostStack_->dismiss(false);
      hostStack_->pushViewController(screen, false);
    }
    device_.application().window()->setSize({800, 600});
    EXPECT_EQ(screen->view()->frame(), (Rect{0, 0, 800, 600}));
    EXPECT_EQ(screen->webView()->frame(), (Rect{0, 0, 800, 681}));
    EXPECT_EQ(screen->loadView()->frame(), (Rect{0, 47, 800, 553}));
    EXPECT_EQ(screen->previousViewSnapshot()->frame(), (Rect{0, 0, 800, 600}));
    EXPECT_EQ(RecordManager::shared().recordingView()->center(), (Point{400, 300}));
    device_.application().window()->setSize({390, 844});
  }
}

TEST_F(ScreenSetUpTest, StopsTheProcessWithoutAnAddressOnceItsViewsAreBuilt) {
  const auto screen = std::make_shared<OVKFApi>();
  EXPECT_DEATH(
      {
        log::setSink({});
        screen->view();
      },
      "\"Distance: .*OrivexSDK/ChatManager:30: Fatal error: instanceURL not set. Call setUrl\\(\\) first\\. "
      ".*startSession");
}

TEST_F(ScreenSetUpTest, ClearsTheDataOfEverySiteAndSaysSo) {
  auto& store = device_.websiteDataStore();
  store.put("chat.example");
  store.put("other.example");
  const auto screen = presentChecked();
  std::make_shared<OVKFApi>()->clearWebViewCache();
  device_.runUntilIdle();
  EXPECT_FALSE(device_.progressOverlay().blocksInput()) << "good news keep the visitor from going on";
  device_.advance(10);
  EXPECT_TRUE(store.sites().empty());
  store.breakDown({"disk full"});
  std::make_shared<OVKFApi>()->clearWebViewCache();
  device_.advance(10);
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows 缓存清理完成", "3.0 hides 缓存清理完成", "10.0 shows 缓存清理失败",
                                   "13.0 hides 缓存清理失败"}));
  EXPECT_TRUE(log_.has("disk full"));
}

}  // namespace
}  // namespace orivex::testing
