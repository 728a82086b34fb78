#pragma once

#include <memory>

#include "contract/Fixture.h"
#include "contract/WebRecorder.h"

#include "orivex/platform/ports/WebEngine.h"

/// What only an engine that runs scripts can keep.
namespace orivex::contract {

template <WebFixture Fixture>
class UserScriptContract : public Suite<Fixture> {
 protected:
  /// The bodies that the page at "/" posts to "contract" when it has these scripts.
  std::vector<std::string> bodies(const Site& site, const std::vector<UserScript>& scripts, std::size_t count) {
    WebRecorder web(this->fixture_.platform(), {{"contract"}, scripts, true});
    web.load(this->fixture_.serve(site) + "/");
    EXPECT_TRUE(this->wait([&] { return web.messages.size() >= count && web.has("finish"); }));
    this->pass(moment);
    std::vector<std::string> bodies;
    for (const auto& message : web.messages) bodies.push_back(message.body);
    return bodies;
  }

  static std::string post(const std::string& expression) {
    return "webkit.messageHandlers.contract.postMessage(" + expression + ");";
  }
};
TYPED_TEST_SUITE_P(UserScriptContract);

TYPED_TEST_P(UserScriptContract, ScriptsRunInOrderBeforeThePagesOwnAndAtItsEnd) {
  using enum UserScript::InjectionTime;
  const std::string own = this->post("window.extraParams") + this->post("window.second");
  const std::vector<UserScript> scripts{
      {this->post("'end'"), documentEnd, true},
      {"window.extraParams={\"hh\":47};", documentStart, true},
      {"window.second=window.extraParams.hh+1;", documentStart, true},
  };
  EXPECT_EQ(this->bodies({{"/", {.body = "<script>" + own + "</script><p>page"}}}, scripts, 3),
            (std::vector<std::string>{R"({"hh":47})", "48", R"("end")"}));
}

TYPED_TEST_P(UserScriptContract, AMainFrameScriptStaysOutOfFrames) {
  const Site site{{"/", {.body = "<iframe src=/frame></iframe>"}}, {"/frame", {.body = "<p>frame"}}};
  const std::vector<UserScript> scripts{
      {this->post("location.pathname"), UserScript::InjectionTime::documentStart, true}};
  EXPECT_EQ(this->bodies(site, scripts, 1), (std::vector<std::string>{R"("/")"}));
}

TYPED_TEST_P(UserScriptContract, LimitedScriptsRunInDocumentsOfThoseOriginsAlone) {
  const UserScript script{"window.told = true;", UserScript::InjectionTime::documentStart, true};
  WebRecorder web(this->fixture_.platform(), {{"contract"}, {script}, true});
  const auto origin = this->fixture_.serve({{"/", {.body = "<script>" + this->post("!!window.told") + "</script>"}}});
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

REGISTER_TYPED_TEST_SUITE_P(UserScriptContract, ScriptsRunInOrderBeforeThePagesOwnAndAtItsEnd,
                            AMainFrameScriptStaysOutOfFrames, LimitedScriptsRunInDocumentsOfThoseOriginsAlone);

}  // namespace orivex::contract
