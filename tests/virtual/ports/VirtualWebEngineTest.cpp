#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contract/WebRecorder.h"

#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {
namespace {

class VirtualWebEngineTest : public ::testing::Test {
 protected:
  VirtualWebEngineTest() { web_.load("a:1"); }

  VirtualWebEngine& engine() { return *device_.webEngines().engines().back(); }

  /// What came out since the last call.
  std::vector<std::string> heard() {
    device_.runUntilIdle();
    std::erase_if(web_.events, [](const std::string& event) { return event.starts_with("ask"); });
    return std::exchange(web_.events, {});
  }

  VirtualDevice device_;
  contract::WebRecorder web_{device_.platform(), {{"goBack"}, {}, true}};
};

using Events = std::vector<std::string>;

TEST_F(VirtualWebEngineTest, ADeadProcessTakesWhatWasUnderWayWithIt) {
  engine().completeLoad();
  heard();
  web_.evaluate("before");
  engine().finish();
  engine().die();
  web_.evaluate("after");
  engine().finish();
  EXPECT_EQ(heard(), (Events{"failed", "url nothing", "failed"}));
  EXPECT_EQ(engine().url(), std::nullopt);
  web_.inside([&] { web_.engine->reload(); });
  EXPECT_TRUE(engine().isProcessAlive());
  engine().completeLoad();
  web_.evaluate("again");
  EXPECT_EQ(heard(), (Events{"start", "commit", "url a:1", "finish", "ran"}));
}

TEST_F(VirtualWebEngineTest, ScriptsFailOnDemandAndMayEndTheEngine) {
  engine().failNextEvaluation("SyntaxError");
  web_.evaluate("1");
  web_.evaluate("2");
  EXPECT_EQ(heard(), (Events{"failed", "ran"}));
  device_.webEngines().setScriptRunner([this](VirtualWebEngine&, const std::string&) -> std::optional<std::string> {
    web_.engine.reset();
    return std::nullopt;
  });
  web_.evaluate("3");
  EXPECT_EQ(heard(), Events());
  EXPECT_TRUE(device_.webEngines().engines().empty());
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
