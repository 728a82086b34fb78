#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/ui/ViewController.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {
namespace {

using Overlay = VirtualProgressOverlay;

class VirtualDeviceTest : public ::testing::Test {
 protected:
  VirtualDevice device_;
};

TEST(VirtualDeviceInstallation, IsThePlatformWhileItLivesAndGivesBackTheOneBefore) {
  EXPECT_FALSE(Platform::isInstalled());
  {
    const VirtualDevice outer;
    EXPECT_EQ(&Platform::current(), &outer.platform());
    {
      const VirtualDevice inner;
      EXPECT_EQ(&Platform::current(), &inner.platform());
    }
    EXPECT_EQ(&Platform::current(), &outer.platform());
  }
  EXPECT_FALSE(Platform::isInstalled());
}

TEST(VirtualDeviceInstallation, ScreensInTheWindowAndInWaitingWorkGoWithTheDevice) {
  struct WebScreen final : ViewController {
    void viewDidLoad() override { view()->addSubview(std::make_shared<WebView>(Rect{}, WebViewConfiguration{})); }
    // As a screen that tidies up after itself: it still finds its platform.
    ~WebScreen() override {
      Platform::current().progressOverlay.dismiss();
      Platform::current().mainQueue.async([] {});
    }
  };
  std::weak_ptr<ViewController> lives[2];
  {
    VirtualDevice device;
    for (auto& life : lives) {
      auto screen = std::make_shared<WebScreen>();
      life = screen;
      screen->view();
      device.application().window()->setRootViewController(screen);
      device.mainQueue().asyncAfter(4.0, [screen] {});
    }
    EXPECT_EQ(device.webEngines().engines().size(), 2U);
  }
  for (const auto& life : lives) EXPECT_TRUE(life.expired());
}

TEST_F(VirtualDeviceTest, TheOverlayRemembersWhatItShowedWhen) {
  auto& overlay = device_.progressOverlay();
  overlay.setMaximumDismissTime(10);
  device_.advance(1);
  overlay.showInfo("slow");
  device_.advance(2);
  overlay.dismiss();
  overlay.dismiss();
  overlay.showProgress(0.25F, "25%");
  device_.advance(20);
  const Overlay::Panel info{Overlay::Kind::info, "slow", 0};
  const Overlay::Panel progress{Overlay::Kind::progress, "25%", 0.25F};
  EXPECT_EQ(overlay.history(), (std::vector<Overlay::Entry>{{1, Overlay::Event::shown, info},
                                                            {3, Overlay::Event::dismissed, info},
                                                            {3, Overlay::Event::shown, progress},
                                                            {13, Overlay::Event::expired, progress}}));
  EXPECT_EQ(overlay.infoTexts(), std::vector<std::string>{"slow"});
}

TEST_F(VirtualDeviceTest, TheApplicationShowsWhatATestMakesItShow) {
  auto& application = device_.application();
  const auto& window = application.window();
  EXPECT_EQ(firstWindow(application), window);
  EXPECT_EQ(statusBarHeight(window.get()), 47);
  application.setStatusBarHeight(std::nullopt);
  EXPECT_EQ(statusBarHeight(window.get()), 0);
  application.setWindowShown(false);
  EXPECT_EQ(firstWindow(application), nullptr);
  application.setWindowShown(true);
  EXPECT_EQ(firstWindow(application), window);
  application.setSceneConnected(false);
  EXPECT_EQ(firstWindow(application), nullptr);
}

TEST_F(VirtualDeviceTest, OnlyAddressesOfOpenableSchemesAreOpened) {
  auto& application = device_.application();
  application.setOpenableSchemes({"https", "weixin"});
  for (const char* text : {"weixin://", "tel:1", "HTTPS://host"}) application.open(*Url::parse(text));
  EXPECT_EQ(application.openedUrls(), (std::vector{*Url::parse("weixin://"), *Url::parse("HTTPS://host")}));
}

TEST_F(VirtualDeviceTest, ActivityIsToldWhileItIsObserved) {
  std::string heard;
  auto active = device_.application().observe(ApplicationEvent::didBecomeActive, [&] { heard += 'a'; });
  const auto resign = device_.application().observe(ApplicationEvent::willResignActive, [&] { heard += 'r'; });
  device_.application().resignActive();
  device_.application().becomeActive();
  active = {};
  device_.application().becomeActive();
  EXPECT_EQ(heard, "ra");
}

TEST_F(VirtualDeviceTest, ASnapshotRemembersWhoseItIs) {
  const auto view = std::make_shared<View>(Rect{1, 2, 3, 4});
  const auto child = std::make_shared<View>(Rect{0, 0, 5, 5});
  view->addSubview(child);
  EXPECT_EQ(view->snapshotView(), nullptr) << "not on a screen";
  const auto& content = device_.application().window()->contentView();
  content->addSubview(view);
  const auto snapshot = std::dynamic_pointer_cast<VirtualSnapshot>(child->snapshotView());
  ASSERT_TRUE(snapshot);
  EXPECT_EQ(snapshot->original(), child);
  EXPECT_EQ(snapshot->frame(), child->frame());
  device_.application().setDrawn(false);
  EXPECT_EQ(view->snapshotView(), nullptr);
  device_.application().setDrawn(true);
  view->removeFromSuperview();
  EXPECT_EQ(child->snapshotView(), nullptr);
  content->addSubview(child);
  EXPECT_NE(child->snapshotView(), nullptr);
  EXPECT_EQ(view->snapshotView(), nullptr);
}

TEST_F(VirtualDeviceTest, AMirroredTreeMayGoInAnyOrder) {
  const auto& content = device_.application().window()->contentView();
  auto parent = std::make_shared<View>();
  const auto child = std::make_shared<View>();
  parent->addSubview(child);
  content->addSubview(parent);
  content->removeAllSubviews();
  content->addSubview(parent);
  const std::weak_ptr<View> life = parent;
  content->removeAllSubviews();
  parent.reset();
  EXPECT_TRUE(life.expired());
  EXPECT_EQ(child->snapshotView(), nullptr);
}

TEST_F(VirtualDeviceTest, ABundleKeepsItsResourcesInAFolderThatGoesWithIt) {
  std::filesystem::path folder;
  {
    VirtualBundle bundle(device_.mainQueue(), {{"CFBundleName", "Kit"}});
    folder = bundle.folder();
    const auto path = bundle.addResource("eruda", "js", "1;");
    EXPECT_EQ(bundle.pathForResource("eruda", "js"), path);
    bundle.setMissing(true);
    EXPECT_FALSE(bundle.infoDictionary());
    EXPECT_FALSE(bundle.pathForResource("eruda", "js"));
    bundle.setMissing(false);
    EXPECT_EQ(bundle.infoDictionary()->at("CFBundleName"), InfoValue("Kit"));
    EXPECT_TRUE(std::filesystem::is_directory(bundle.addUnreadableResource("eruda", "js")));
    bundle.removeResource("eruda", "js");
    EXPECT_FALSE(bundle.pathForResource("eruda", "js"));
    bundle.setInfo("CFBundleName", std::nullopt);
    EXPECT_TRUE(bundle.infoDictionary()->empty());
  }
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(VirtualDeviceTest, AnExchangeTakesItsTimeAndNoMoreThanItsTimeOut) {
  struct Row {
    VirtualReply reply;
    double seconds;
    int outcome;  // a status, or the code of a transport error
  };
  const auto there = *Url::parse("https://chat.test/there");
  const Row rows[] = {
      {VirtualReply::respond(200, "", 1.5), 1.5, 200},
      {VirtualReply::respond(200, "", 5), 5, 200},
      {VirtualReply::respond(200, "", 5.1), 5, TransportError::timedOut},
      {VirtualReply::fail("refused", 0.2), 0.2, TransportError::other},
      {VirtualReply::never(), 5, TransportError::timedOut},
      {VirtualReply::redirect(there, 0.1), 2.1, TransportError::other},  // to itself, until the client has enough
      {VirtualReply::redirect(there, 2), 5, TransportError::timedOut},
  };
  for (const auto& row : rows) {
    device_.httpClient().setServer([&](const UrlRequest&) { return row.reply; });
    const double start = device_.mainQueue().now();
    int outcome = 0;
    double end = 0;
    device_.httpClient().send({*Url::parse("https://chat.test/"), 5, {}}, [&](const HttpResult& result) {
      end = device_.mainQueue().now() - start;
      const auto* response = std::get_if<HttpResponse>(&result);
      outcome = response ? response->status : std::get<TransportError>(result).code;
    });
    device_.advance(60);
    EXPECT_EQ(outcome, row.outcome);
    EXPECT_NEAR(end, row.seconds, 1e-6);
  }
  EXPECT_EQ(device_.httpClient().requests().size(), std::size(rows));
}

TEST_F(VirtualDeviceTest, WebsiteDataIsFetchedAndRemovedByKind) {
  using enum WebsiteDataType;
  auto& store = device_.websiteDataStore();
  store.put("a.test", {cookies, diskCache});
  store.put("b.test", {cookies});
  store.removeData({cookies}, {{"a.test", nullptr}, {"unknown.test", nullptr}}, nullptr);
  EXPECT_EQ(store.sites(),
            (std::map<std::string, std::set<WebsiteDataType>>{{"a.test", {diskCache}}, {"b.test", {cookies}}}));
}

}  // namespace
}  // namespace orivex::testing
