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
    void viewDidLoad() override { view()->addSubview(std::make_shared<WebView>(Rect{}, WebEngineConfiguration{})); }
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

TEST_F(VirtualDeviceTest, OnlyWhatIsOnTheScreenHasASnapshot) {
  const auto view = std::make_shared<View>();
  const auto child = std::make_shared<View>();
  view->addSubview(child);
  EXPECT_EQ(view->snapshotView(), nullptr);
  const auto& content = device_.application().window()->contentView();
  content->addSubview(view);
  EXPECT_NE(child->snapshotView(), nullptr);
  content->addSubview(child);
  view->removeFromSuperview();
  EXPECT_EQ(view->snapshotView(), nullptr);
  EXPECT_NE(child->snapshotView(), nullptr);
}

TEST_F(VirtualDeviceTest, ABundlesFolderGoesWithIt) {
  std::filesystem::path folder;
  {
    VirtualBundle bundle(device_.mainQueue(), {{"CFBundleName", "Kit"}});
    folder = bundle.folder();
    bundle.addResource("eruda", "js", "1;");
    EXPECT_TRUE(std::filesystem::exists(folder / "eruda.js"));
  }
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(VirtualDeviceTest, RedirectsInACircleOrOutOfHttpsEndInAnError) {
  for (const auto& [target, delay, end, code] :
       {std::tuple{"https://chat.test/there", 2.0, 42.0, TransportError::other},
        {"https://chat.test/there", 6.0, 5.0, TransportError::timedOut},
        {"http://chat.test/there", 2.0, 2.0, TransportError::other}}) {
    auto reply = VirtualReply::redirect(*Url::parse(target), delay);
    device_.httpClient().setServer([&](const UrlRequest&) { return reply; });
    const double start = device_.mainQueue().now();
    bool ended = false;
    device_.httpClient().send({*Url::parse("https://chat.test/"), 5, {}},
                              [&, code = code, end = end](const StatusResult& result) {
                                EXPECT_EQ(std::get<TransportError>(result).code, code);
                                EXPECT_NEAR(device_.mainQueue().now() - start, end, 1e-6);
                                ended = true;
                              });
    device_.advance(60);
    EXPECT_TRUE(ended);
  }
}

}  // namespace
}  // namespace orivex::testing
