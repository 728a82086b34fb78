#include "support/ScreenFixture.h"
#include "support/Widgets.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

const std::string readyPage = "<body>chat<script>" + raise("ready") + "</script>";

class BadPage : public ScreenFixture {
 protected:
  // Posts, then waits for an event that the page raises after it: by then the post has been served.
  void post(OVKFApi& chat, const std::string& script) {
    recorder->events.clear();
    evaluate(chat, script + ";" + raise("after") + "0");
    ASSERT_TRUE(wait([&] { return raised("after"); }, 20)) << script;
  }
};

TEST_F(BadPage, MegabytesAndAThousandMessagesArriveInOrderAndAreCutInTheLog) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  recorder->events.clear();
  evaluate(*chat,
           "const track = (name, attributes) => webkit.messageHandlers.trackEvent.postMessage({name, attributes});"
           "track('big', {a: 'x'.repeat(4 << 20)}); for (let i = 0; i < 1000; i++) track('' + i, {}); 0");
  ASSERT_TRUE(wait([&] { return recorder->events.size() >= 1001; }, 20));
  EXPECT_EQ(recorder->events.front().second.at("a").size(), std::size_t{4} << 20U);
  for (std::size_t index = 0; index < 1000; ++index) {
    EXPECT_EQ(recorder->events[index + 1].first, std::to_string(index));
  }
  for (const auto& line : log.get()) EXPECT_LT(line.size(), 8192U);
}

TEST_F(BadPage, WhatIsFarBeyondAnyMessageIsRefusedInThePage) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  const struct {
    const char* body;
    const char* outcome;
  } rows[] = {
      {"Object.fromEntries(Array.from({length: 200000}, (_, i) => ['k' + i, 1]))", "RangeError"},
      {"Object.fromEntries(Array.from({length: 1000}, (_, i) => ['k' + i, 1]))", "posted"},
      {"Array(200000).fill(0)", "RangeError"},
      {"new Map(Array.from({length: 200000}, (_, i) => [i, 1]))", "RangeError"},
      {"{a: new Set([...Array(200000).keys()])}", "RangeError"},
      {"'x'.repeat(9 << 20)", "RangeError"},
      {"{['x'.repeat(9 << 20)]: 1}", "RangeError"},
      {"Array.from({length: 40}).reduce((all) => [all, all], 1)", "RangeError"},  // short here, endless as text
      {"{get a() { return (window.asked = (window.asked ?? 0) + 1) > 1 ? Array(200000).fill(0) : 1; }}", "posted"},
      {"{name: 'plain', attributes: {list: [1, null, 'two'], date: new Date(0)}}", "posted"},
      {"Array.from({length: 5000}).reduce((deep) => ({deep}), 1)", "posted"},
      {"(() => { const ring = {}; return ring.ring = ring; })()", "RangeError"},
      {"(() => 1)", "DataCloneError"},
      {"undefined", "posted"},
      {"null", "posted"},
  };
  // A page that has changed what the check could be built on.
  evaluate(*chat,
           "Array.prototype.push = Map.prototype.forEach = Object.prototype.hasOwnProperty = () => {};"
           "window.structuredClone = (value) => value; 0");
  for (const auto& row : rows) {
    EXPECT_EQ(evaluate(*chat, std::string("(() => { try { webkit.messageHandlers.trackEvent.postMessage(") + row.body +
                                  "); return 'posted'; } catch (error) { return error.name; } })()"),
              row.outcome)
        << row.body;
  }
  log.take();
  post(*chat, "webkit.messageHandlers.trackEvent.postMessage([new Date(0), new Map([[1, 2]]), undefined])");
  EXPECT_TRUE(log.has(R"(trackEvent [\"1970-01-01T00:00:00.000Z\",{},null])")) << "the body changed on its way";
}

TEST_F(BadPage, AFloodIsRefusedInThePageUntilTheMainThreadHasHadItsTime) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  EXPECT_EQ(evaluate(*chat,
                     "(() => { let posted = 0; try { for (; posted < 300; ++posted) "
                     "webkit.messageHandlers.trackEvent.postMessage('x'.repeat(1 << 20)); } "
                     "catch (error) { return error.name + (posted > 20); } })()"),
            "RangeErrortrue");
  const std::string again =
      "try { webkit.messageHandlers.trackEvent.postMessage({name: 'again', attributes: {}}) } catch { }; 0";
  EXPECT_TRUE(wait([&] { return evaluate(*chat, again) == "0" && raised("again"); }, 20));
}

TEST_F(BadPage, AsksNothingWhileAnotherScreenCoversIt) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  chat->webView()->evaluate("window.answer = String(confirm('Stay?'))");
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, 10));
  chat->present(std::make_shared<ViewController>(), false);
  EXPECT_TRUE(wait([] { return !openDialog(); }, 10)) << "it lies over what shows now";
  EXPECT_EQ(evaluate(*chat, "answer"), "false");
  EXPECT_EQ(evaluate(*chat, "String(confirm('Stay?')) + prompt('Name?', 'x')"), "falsenull");
  EXPECT_FALSE(openDialog());
  EXPECT_EQ(log.take("A page that does not show has asked something").size(), 2U);
  chat->dismiss(false);
  chat->webView()->evaluate("confirm('Stay?')");
  EXPECT_TRUE(wait([] { return openDialog() != nullptr; }, 10)) << "it asks nothing any more";
}

}  // namespace
}  // namespace orivex::gtk
