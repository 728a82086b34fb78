#pragma once

#include <memory>
#include <utility>

#include "contract/Fixture.h"
#include "contract/WebRecorder.h"

#include "orivex/platform/ports/WebEngine.h"

namespace orivex::contract {

template <WebFixture Fixture>
class WebEngineContract : public Suite<Fixture> {
 protected:
  void SetUp() override { open({}); }

  void open(const WebEngineConfiguration& configuration) {
    web_ = std::make_unique<WebRecorder>(this->fixture_.platform(), configuration);
  }

  /// Loads `address` to its end and looks on a little longer.
  std::string courseOf(const std::string& address) {
    web_->load(address);
    EXPECT_TRUE(this->wait([&] { return web_->isOver(); })) << address;
    this->pass(0.1);
    return web_->course();
  }

  std::unique_ptr<WebRecorder> web_;
};
TYPED_TEST_SUITE_P(WebEngineContract);

TYPED_TEST_P(WebEngineContract, ALoadStartsCommitsAndFinishesAtItsAddress) {
  const auto origin = this->fixture_.serve({{"/chat?a=1", {.body = "<p>chat"}}});
  EXPECT_EQ(this->courseOf(origin + "/chat?a=1"), "start commit finish");
  EXPECT_TRUE(this->web_->has("ask " + origin + "/chat?a=1"));
  EXPECT_TRUE(this->web_->has("ask response"));
  ASSERT_FALSE(this->web_->addresses.empty());
  EXPECT_EQ(this->web_->addresses.back(), origin + "/chat?a=1");
  EXPECT_EQ(this->web_->events.back(), "finish") << "the address must be known when the page is";
}

TYPED_TEST_P(WebEngineContract, ARedirectIsToldAndOnlyAServerThatIsNotThereFails) {
  const auto origin = this->fixture_.serve({{"/old", {.status = 302, .location = "/new"}},
                                            {"/new", {.body = "<p>new"}},
                                            {"/gone", {.status = 404, .body = "<p>gone"}}});
  EXPECT_EQ(this->courseOf(origin + "/old"), "start redirect commit finish");
  EXPECT_EQ(this->web_->addresses.back(), origin + "/new");
  EXPECT_TRUE(this->web_->has("ask " + origin + "/new"));
  for (const auto& [address, course] : {std::pair{origin + "/gone", "start commit finish"},
                                        {this->fixture_.refusingOrigin() + "/", "start failProvisional"}}) {
    this->web_->events.clear();
    EXPECT_EQ(this->courseOf(address), course);
  }
}

TYPED_TEST_P(WebEngineContract, ANavigationThatIsNotAllowedShowsNothing) {
  const auto origin = this->fixture_.serve({{"/chat", {.body = "<p>chat"}}});
  this->web_->policy = NavigationPolicy::cancel;
  this->web_->load(origin + "/chat");
  EXPECT_TRUE(this->wait([&] { return !this->web_->events.empty(); }));
  this->pass(moment);
  EXPECT_FALSE(this->web_->has("commit"));
  EXPECT_FALSE(this->web_->has("finish"));
}

TYPED_TEST_P(WebEngineContract, ALocalPageLoads) {
  const auto path = this->fixture_.localPage();
  this->web_->inside([&] { this->web_->engine->loadFile(path, path); });
  EXPECT_TRUE(this->wait([&] { return this->web_->isOver(); }));
  EXPECT_EQ(this->web_->course(), "start commit finish");
  EXPECT_EQ(this->web_->addresses.back(), Url::fromFilePath(path).absoluteString());
}

TYPED_TEST_P(WebEngineContract, ReloadLoadsTheSameAddressAgainAsTheSameAgent) {
  const auto origin = this->fixture_.serve({{"/chat", {.body = "<p>chat"}}});
  this->web_->inside([&] { this->web_->engine->setCustomUserAgent("ChatKit/1.2.3.4(x86_64)"); });
  EXPECT_EQ(this->courseOf(origin + "/chat"), "start commit finish");
  this->web_->events.clear();
  this->web_->inside([&] { this->web_->engine->reload(); });
  EXPECT_TRUE(this->wait([&] { return this->web_->isOver(); }));
  EXPECT_EQ(this->web_->course(), "start commit finish");
  EXPECT_EQ(this->fixture_.userAgents("/chat"), std::vector<std::string>(2, "ChatKit/1.2.3.4(x86_64)"));
}

// The bodies as a page writes them and as they must arrive. The order of an object's keys is not promised.
constexpr std::pair<const char*, const char*> postedBodies[] = {
    {"{nested: {list: [1, 'two', null]}}", R"({"nested":{"list":[1,"two",null]}})"},
    {R"('say "hi"\\\n')", R"("say \"hi\"\\\n")"},
    {"'你好 é'", R"("你好 é")"},
    {R"('\u{1F600}')", R"("😀")"},
    {"-0.5", "-0.5"},
    {"[1, [2]]", "[1,[2]]"},
    {"{}", "{}"},
    {"null", "null"},
    {"undefined", "null"},
};

TYPED_TEST_P(WebEngineContract, WhatAPagePostsArrivesAsJsonInOrder) {
  ServedReply page{.body = "<!doctype html><meta charset=utf-8><script>"};
  for (const auto& [script, json] : postedBodies) {
    page.body += std::string("webkit.messageHandlers.contract.postMessage(") + script + ");";
    page.posts.push_back({"contract", json});
  }
  page.body += "webkit.messageHandlers.other.postMessage(1);</script>";
  page.posts.push_back({"other", "1"});
  this->open({{"contract", "other"}, {}, true});
  this->web_->load(this->fixture_.serve({{"/", page}}) + "/");
  const auto& messages = this->web_->messages;
  EXPECT_TRUE(this->wait([&] { return messages.size() == page.posts.size() && this->web_->has("finish"); }));
  ASSERT_EQ(messages.size(), page.posts.size());
  for (std::size_t index = 0; index < messages.size(); ++index) {
    EXPECT_EQ(messages[index].name, page.posts[index].name);
    EXPECT_EQ(messages[index].body, page.posts[index].body);
  }
}

TYPED_TEST_P(WebEngineContract, ScriptsAnswerInOrderAndTheirErrorsAreTold) {
  this->web_->evaluate("document.documentElement.style.webkitUserSelect='none';");
  EXPECT_TRUE(this->wait([&] { return this->web_->events.size() == 1; })) << "an empty view must take a script";
  this->courseOf(this->fixture_.serve({{"/", {.body = "<p>page"}}}) + "/");
  this->web_->events.clear();
  this->web_->evaluate("1 + 1");
  this->web_->evaluate("throw new Error('broken')");
  this->web_->evaluate("document.title = 'still here'; undefined");
  this->web_->inside([&] { this->web_->engine->evaluate("2", nullptr); });
  EXPECT_TRUE(this->wait([&] { return this->web_->events.size() >= 3; }));
  EXPECT_EQ(this->web_->events, (std::vector<std::string>{"ran", "failed", "ran"}));
}

TYPED_TEST_P(WebEngineContract, WhatAPageAsksForReachesItsHandlersAndThePageStays) {
  const auto origin = this->fixture_.serve({{"/", {.body = askingPage}}});
  EXPECT_EQ(this->courseOf(origin + "/"), "start commit finish");
  this->web_->events.clear();
  auto& web = *this->web_;
  for (const auto* script : {askForWindow, askForFiles, askForDownload}) {
    this->web_->inside([&] { web.engine->evaluate(script, nullptr); });
  }
  EXPECT_TRUE(this->wait([&] { return web.windows.size() + web.fileRequests.size() + web.downloads.size() >= 3; }));
  EXPECT_EQ(web.windows, std::vector<std::string>{"https://elsewhere.example/a?b#c"});
  EXPECT_EQ(web.fileRequests, (std::vector<FileChooserRequest>{{{"image/*"}, true}}));
  ASSERT_EQ(web.downloads.size(), 1U);
  EXPECT_TRUE(web.downloads.front().saved);
  EXPECT_TRUE(web.downloads.front().fileName.starts_with("note"));
  this->pass(moment);
  for (const auto* event : {"commit", "finish", "failProvisional"}) EXPECT_FALSE(web.has(event)) << event;
  web.inside([&] { std::move(web.fileAnswer)({}); });
}

TYPED_TEST_P(WebEngineContract, AnEngineMayBeDestroyedWhileItsPageWaits) {
  const auto origin = this->fixture_.serve({{"/", {.body = askingPage}}});
  for (const auto& [script, event] :
       {std::pair{askForWindow, "window"}, std::pair{askForFiles, "files"}, std::pair{askForDownload, "download"}}) {
    this->open({});
    this->courseOf(origin + "/");
    this->web_->endAt = event;
    this->web_->inside([&, text = script] { this->web_->engine->evaluate(text, nullptr); });
    EXPECT_TRUE(this->wait([&] { return !this->web_->engine; })) << event;
    std::move(this->web_->fileAnswer)({"/late.txt"});
    this->pass(moment);
    EXPECT_EQ(this->web_->events.back(), event) << "told something after its end";
  }
}

TYPED_TEST_P(WebEngineContract, ADestroyedEngineTellsNothing) {
  const auto origin = this->fixture_.serve({{"/", {.body = "<p>page"}}});
  this->web_->load(origin + "/");
  this->web_->evaluate("1");
  this->web_->engine.reset();
  this->pass(moment);
  EXPECT_EQ(this->web_->events, std::vector<std::string>());
}

TYPED_TEST_P(WebEngineContract, AnEngineMayBeDestroyedInAnyOfItsHandlers) {
  ServedReply page{.body = "<script>webkit.messageHandlers.contract.postMessage(1)</script><p>page"};
  page.posts.push_back({"contract", "1"});
  const auto origin = this->fixture_.serve({{"/", page}});
  const std::string asked = "ask " + origin + "/";
  for (const auto& event : {asked, std::string("start"), std::string("ask response"), std::string("commit"),
                            std::string("message"), std::string("finish")}) {
    this->open({{"contract"}, {}, true});
    this->web_->endAt = event;
    this->web_->load(origin + "/");
    EXPECT_TRUE(this->wait([&] { return !this->web_->engine; })) << event;
    this->pass(moment);
    ASSERT_FALSE(this->web_->events.empty());
    EXPECT_EQ(this->web_->events.back(), event) << "told something after its end";
  }
}

REGISTER_TYPED_TEST_SUITE_P(WebEngineContract, ALoadStartsCommitsAndFinishesAtItsAddress,
                            ARedirectIsToldAndOnlyAServerThatIsNotThereFails, ANavigationThatIsNotAllowedShowsNothing,
                            ALocalPageLoads, ReloadLoadsTheSameAddressAgainAsTheSameAgent,
                            WhatAPagePostsArrivesAsJsonInOrder, ScriptsAnswerInOrderAndTheirErrorsAreTold,
                            WhatAPageAsksForReachesItsHandlersAndThePageStays, AnEngineMayBeDestroyedWhileItsPageWaits,
                            ADestroyedEngineTellsNothing, AnEngineMayBeDestroyedInAnyOfItsHandlers);

}  // namespace orivex::contract
