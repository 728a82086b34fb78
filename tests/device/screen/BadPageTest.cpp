#include "ScreenFixture.h"
#include "WebTools.h"

#include "orivex/platform/ui/WebView.h"
#include "orivex/sdk/OVKFApiManager.h"

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

TEST_F(BadPage, WrongBodiesAreOneLogLineOrNothing) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  struct Case {
    const char* post;
    const char* line;
  };
  const Case cases[] = {
      {"trackEvent.postMessage({name: 'x', attributes: {a: 1}})",
       "Error decoding TrackModel: attributes.a: expected a string, found a number"},
      {"trackEvent.postMessage([1])", nullptr},
      {"trackEvent.postMessage('text')", nullptr},
      {"trackEvent.postMessage(undefined)", nullptr},
      {"openUrl.postMessage(17)", nullptr},
      {"openUrl.postMessage({})", nullptr},
      {"openFile.postMessage('not an address <>')", nullptr},
      {"openDocumentPicker.postMessage({fileSize: 1})",
       "Error decoding PostMessageModel: deviceId: required, but missing"},
      {"openCamera.postMessage({deviceId: 'd', fileSize: 1.5})", "Error decoding PostMessageModel: fileSize"},
      {"openPhotoLibraryPicker.postMessage(null)", nullptr},
      {"recording.postMessage({deviceId: 'd', action: 7})", "Error decoding PostMessageModel: action"},
      {"recording.postMessage({deviceId: 'd', action: 'dance'})", nullptr},
  };
  for (const auto& [script, line] : cases) {
    const int before = log.count("Error decoding");
    post(*chat, "webkit.messageHandlers." + std::string(script));
    EXPECT_EQ(recorder->events.size(), 1U) << script;
    EXPECT_EQ(log.count("Error decoding"), before + (line ? 1 : 0)) << script;
    EXPECT_TRUE(!line || log.has(line)) << script;
  }
  EXPECT_EQ(evaluate(*chat, "typeof webkit.messageHandlers.unknown"), "undefined");
}

TEST_F(BadPage, AMegabyteBodyIsServedAndCutInTheLog) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  recorder->events.clear();
  evaluate(*chat,
           "webkit.messageHandlers.trackEvent.postMessage({name: 'big', attributes: {a: 'x'.repeat(4 << 20)}}); 0");
  ASSERT_TRUE(wait([&] { return raised("big"); }, 20));
  EXPECT_EQ(recorder->events.front().second.at("a").size(), std::size_t{4} << 20U);
  for (const auto& line : log.get()) EXPECT_LT(line.size(), 8192U);
}

TEST_F(BadPage, AThousandMessagesAtOnceArriveInOrder) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  recorder->events.clear();
  evaluate(*chat,
           "for (let i = 0; i < 1000; i++) webkit.messageHandlers.trackEvent.postMessage({name: '' + i, attributes: "
           "{}}); 0");
  ASSERT_TRUE(wait([&] { return recorder->events.size() >= 1000; }, 20));
  for (std::size_t index = 0; index < 1000; ++index) EXPECT_EQ(recorder->events[index].first, std::to_string(index));
}

TEST_F(BadPage, DeepBodiesAndCyclesDoNoHarm) {
  const SocketServer server(servePage(readyPage));
  const auto chat = openChat(server.url(""));
  post(*chat,
       "let deep = {}; for (let i = 0; i < 5000; i++) deep = {deep}; "
       "try { webkit.messageHandlers.trackEvent.postMessage(deep) } catch (e) {}");
  post(*chat,
       "let ring = {}; ring.ring = ring; try { webkit.messageHandlers.trackEvent.postMessage(ring) } catch (e) {}");
  EXPECT_EQ(evaluate(*chat, "1 + 1"), "2") << "the page lives on";
}

TEST_F(BadPage, AnOpenDialogKeepsNeitherTheScreenNorItsPage) {
  const SocketServer server(servePage(readyPage));
  auto chat = openChat(server.url(""));
  chat->webView()->evaluate("confirm('Stay?')");
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, 10));
  const std::weak_ptr<OVKFApi> gone = chat;
  chat->close();
  chat.reset();
  EXPECT_TRUE(wait([&] { return gone.expired(); }, 15));
  EXPECT_FALSE(openDialog()) << "it asks for a page that is gone";
}

}  // namespace
}  // namespace orivex::gtk
