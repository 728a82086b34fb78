#pragma once

#include "contract/Fixture.h"
#include "contract/WebRecorder.h"

#include "orivex/platform/ports/WebEngine.h"

/// What only an engine that runs scripts can keep.
namespace orivex::contract {

template <WebFixture Fixture>
class UserScriptContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(UserScriptContract);

TYPED_TEST_P(UserScriptContract, LimitedScriptsRunInDocumentsOfThoseOriginsAlone) {
  const std::string script = "window.told = true;";
  WebRecorder web(this->fixture_.platform(), {{"contract"}, {script}, true});
  const auto origin = this->fixture_.serve(
      {{"/", {.body = "<script>webkit.messageHandlers.contract.postMessage(!!window.told);</script>"}}});
  const auto next = [&](const std::vector<std::string>& origins) {
    const auto seen = web.messages.size();
    web.inside([&] { web.engine->limitUserScripts(origins); });
    web.load(origin + "/");
    EXPECT_TRUE(this->wait([&] { return web.messages.size() > seen; }));
    return web.messages.size() > seen ? web.messages.back().body : "";
  };
  EXPECT_EQ(next({"https://other.example", origin}), "true");
  EXPECT_EQ(next({"https://other.example", "https://[::1]:8443"}), "false");
  EXPECT_EQ(next({origin}), "true");
  EXPECT_EQ(next({}), "false");
}

REGISTER_TYPED_TEST_SUITE_P(UserScriptContract, LimitedScriptsRunInDocumentsOfThoseOriginsAlone);

}  // namespace orivex::contract
