#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/testing/VirtualDevice.h"
#include "orivex/testing/VirtualWebEngine.h"

namespace orivex::testing {
namespace {

class VirtualWebEngineTest : public ::testing::Test {
 protected:
  VirtualWebEngineTest() {
    WebEngineHandlers handlers;
    handlers.didStartProvisionalNavigation = [this] { heard_ += "start "; };
    handlers.didReceiveServerRedirect = [this] { heard_ += "redirect "; };
    handlers.didCommitNavigation = [this] { heard_ += "commit "; };
    handlers.didFinishNavigation = [this] { heard_ += "finish "; };
    handlers.didFailProvisionalNavigation = [this](const std::string& error) { heard_ += "[" + error + "] "; };
    handlers.decideNavigationAction = [this](const auto&) { return action_; };
    handlers.decideNavigationResponse = [this] { return response_; };
    handlers.urlChanged = [this](const auto& url) { heard_ += url.value_or("gone") + " "; };
    made_ = device_.webEngines().make({{"goBack"}, {}, true}, std::move(handlers));
    made_->load({*Url::parse("a:1"), 60, {}});
  }

  VirtualWebEngine& engine() { return *device_.webEngines().engines().back(); }

  /// What came out since the last call.
  std::string heard() {
    device_.runUntilIdle();
    return std::exchange(heard_, {});
  }

  void evaluate(const std::string& script) {
    made_->evaluate(script, [this](const auto& error) { heard_ += error.value_or("ran") + " "; });
  }

  VirtualDevice device_;
  std::string heard_;
  NavigationPolicy action_ = NavigationPolicy::allow;
  NavigationPolicy response_ = NavigationPolicy::allow;
  std::unique_ptr<WebEngine> made_;
};

TEST_F(VirtualWebEngineTest, PlaysWhatTheTestTellsIt) {
  engine().completeLoad();
  EXPECT_EQ(heard_, "");
  EXPECT_EQ(heard(), "start commit a:1 finish ");
  engine().startProvisional();
  engine().redirect();
  engine().commit("a:2");
  EXPECT_EQ(heard(), "start redirect commit a:2 ");
  engine().startProvisional();
  engine().failProvisional("refused");
  EXPECT_EQ(heard(), "start [refused] ");
  EXPECT_EQ(engine().url(), "a:2") << "a failed load leaves the page as it was";
}

TEST_F(VirtualWebEngineTest, ARefusedNavigationGoesNoFurther) {
  action_ = NavigationPolicy::cancel;
  engine().completeLoad();
  EXPECT_EQ(heard(), "");
  action_ = NavigationPolicy::allow;
  response_ = NavigationPolicy::cancel;
  engine().completeLoad();
  EXPECT_EQ(heard(), "start [The response was refused] ");
}

TEST_F(VirtualWebEngineTest, ADeadProcessTakesWhatWasUnderWayWithIt) {
  engine().completeLoad();
  heard();
  evaluate("before");
  engine().finish();
  engine().die();
  evaluate("after");
  engine().finish();
  EXPECT_EQ(heard(), "The page's process is gone gone The page's process is gone ");
  EXPECT_EQ(engine().url(), std::nullopt);
  made_->reload();
  EXPECT_TRUE(engine().isProcessAlive());
  engine().completeLoad();
  evaluate("again");
  EXPECT_EQ(heard(), "start commit a:1 finish ran ");
}

TEST_F(VirtualWebEngineTest, ScriptsFailOnDemandAndCanBeAnswered) {
  engine().failNextEvaluation("SyntaxError");
  evaluate("1");
  evaluate("2");
  EXPECT_EQ(heard(), "SyntaxError ran ");
  device_.webEngines().setScriptRunner([](VirtualWebEngine& page, const std::string& script) {
    page.finish();
    return std::optional(script + " failed");
  });
  evaluate("3");
  EXPECT_EQ(heard(), "3 failed finish ");
  device_.webEngines().setScriptRunner([this](VirtualWebEngine&, const std::string&) -> std::optional<std::string> {
    made_.reset();
    return std::nullopt;
  });
  evaluate("4");
  EXPECT_EQ(heard(), "");
  EXPECT_TRUE(device_.webEngines().engines().empty());
}

TEST_F(VirtualWebEngineTest, ALoaderPlaysEachLoad) {
  device_.webEngines().setLoader([](VirtualWebEngine& page) { page.completeLoad(); });
  EXPECT_EQ(heard(), "start commit a:1 finish ");
  made_->reload();
  made_->loadFile("/a b.html", "/");
  EXPECT_EQ(heard(), "start commit file:///a%20b.html finish start commit finish ");
}

TEST_F(VirtualWebEngineTest, RemembersWhatItWasAskedFor) {
  made_->setCustomUserAgent("kit");
  made_->loadFile("/page.html", "/");
  made_->reload();
  evaluate("one");
  evaluate("two");
  EXPECT_EQ(engine().loads(), (std::vector<UrlRequest>{{*Url::parse("a:1"), 60, {}}}));
  EXPECT_EQ(engine().fileLoads(), (std::vector<VirtualWebEngine::FileLoad>{{"/page.html", "/"}}));
  EXPECT_EQ(engine().reloadCount(), 1);
  EXPECT_EQ(engine().scripts(), (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(engine().customUserAgent(), "kit");
  EXPECT_EQ(device_.webEngines().madeCount(), 1U);
}

TEST_F(VirtualWebEngineTest, MayOutliveItsDevice) {
  auto device = std::make_unique<VirtualDevice>();
  auto engine = device->webEngines().make({}, {});
  device.reset();
  engine.reset();
}

using VirtualWebEngineDeathTest = VirtualWebEngineTest;

TEST_F(VirtualWebEngineDeathTest, PostingToANameThatNobodyRegisteredIsTold) {
  EXPECT_DEATH(engine().post("goForth", "{}"), "no script message handler is registered as goForth");
}

}  // namespace
}  // namespace orivex::testing
