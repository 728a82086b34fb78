#include "support/ScreenFixture.h"
#include "web/WebKitEngine.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

const std::string readyPage = "<body>chat<script>" + raise("ready") + "</script>";

constexpr const char* viewport = "document.querySelector('meta[name=viewport]')?.content";

class Opening : public ScreenFixture {};

TEST_F(Opening, ChecksThePageThenLoadsItUnderTheSameName) {
  const SocketServer server(servePage("<body><script src=/chat.js></script><script>" + raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));

  const auto requests = server.requests();
  ASSERT_GE(requests.size(), 3U) << "the check, the page and its script";
  const std::string page = "GET " + chatPath + "?access_token=key&x-entry=entry&identity_id=&deviceId=";
  EXPECT_TRUE(requests[0].starts_with(page));
  EXPECT_TRUE(requests[1].starts_with(page));
  for (const auto& request : requests) {
    EXPECT_NE(request.find("User-Agent: " + OVKFApiHelper::userAgent() + "\r\n"), std::string::npos) << request;
  }
  EXPECT_EQ(evaluate(*chat, "navigator.userAgent"), OVKFApiHelper::userAgent());
  EXPECT_TRUE(
      wait([&] { return evaluate(*chat, viewport) == "width=device-width, initial-scale=1, user-scalable=0"; }, 5));
}

TEST_F(Opening, TheQueuedMessageArrivesInThePageAsItWasSent) {
  const SocketServer server(servePage(readyPage));
  auto body = std::make_shared<MessageBody>();
  body->title = "订单 & more=\"yes\" +100% #1 \U0001F4E6";
  OVKFApi().sendMessage(3, body);
  const auto chat = openChat(server.url(""));
  // "&" and "+" stay as they are in the address: a page takes all that follows the key and undoes percent escapes.
  EXPECT_EQ(evaluate(*chat, "JSON.parse(decodeURIComponent(location.search.split('object_value=')[1])).title"),
            *body->title);
}

TEST_F(Opening, NoLogHasTheTokenAndByDefaultNothingOfTheVisitor) {
  const std::string page =
      "<body><script>"
      "console.error(location.href); navigator.geolocation.getCurrentPosition(() => {});"
      "window.open(location.href); fetch('https://localhost:1' + location.search);"
      "const post = (name, body) => webkit.messageHandlers[name].postMessage(body);"
      "post('trackEvent', 'secret-word'); post('openDocumentPicker', {fileSize: 'secret-word'});"
      "post('openUrl', 'javascript:' + location.href); post('openFile', location.href + ' x');" +
      raise("done") + "</script>";
  const SocketServer server(servePage(page));
  auto user = std::make_shared<UserMappingModel>();
  user->identity_id = "secret-identity";
  user->visitor_name = user->phone = user->email = "secret-name";
  const auto chatOn = [&](const std::string& address) {
    auto chat = std::make_shared<OVKFApi>();
    chat->conversionDelegate = recorder;
    chat->startSession(address, "entry", "secret-key", user);
    window()->rootViewController()->present(chat, false);
    return chat;
  };
  for (const auto level : {log::Level::warning, log::Level::debug}) {
    log.take();
    log::setLevel(level);
    ::testing::internal::CaptureStderr();
    recorder->events.clear();
    chatOn(server.url(""));
    EXPECT_TRUE(wait([&] { return raised("done"); }, 20));
    window()->rootViewController()->dismiss(false);
    chatOn("http://127.0.0.1:1");
    EXPECT_TRUE(wait([&] { return log.has("The chat at http://127.0.0.1:1 failed"); }, 20));
    window()->rootViewController()->dismiss(false);
    auto lines = log.take();
    lines.push_back(::testing::internal::GetCapturedStderr());
    for (const auto& line : lines) {
      for (const char* secret : {"secret-key", "secret-name", "secret-word"}) {
        EXPECT_EQ(line.find(secret), std::string::npos) << line;
      }
      EXPECT_TRUE(level != log::Level::warning || line.find("secret") == std::string::npos) << line;
    }
  }
}

TEST_F(Opening, ClearingTheCacheTakesCookiesAndStorage) {
  const SocketServer server(servePage(readyPage));
  constexpr const char* kept = "document.cookie + '|' + localStorage.getItem('visitor')";
  auto chat = openChat(server.url(""));
  evaluate(*chat, "document.cookie = 'visitor=1; max-age=3600'; localStorage.setItem('visitor', '1'); 0");
  const auto reopened = [&] {
    window()->rootViewController()->dismiss(false);
    recorder->events.clear();
    chat = openChat(server.url(""));
    return evaluate(*chat, kept);
  };
  EXPECT_EQ(reopened(), "visitor=1|1") << "a visitor who comes back is known";
  chat->clearWebViewCache();
  EXPECT_TRUE(wait([&] { return panelText() == "缓存清理完成"; }, 10));
  EXPECT_EQ(reopened(), "|null");
}

TEST_F(Opening, ThePlaceholderIsReadOutInTheVisitorsLanguage) {
  const SocketServer server(servePage(readyPage));
  for (const auto& [tag, text] : {std::pair{"en", "Loading…"}, {"zh", "正在加载…"}}) {
    setLanguage(tag);
    const auto chat = openChat(server.url(""));
    auto* const view = WEBKIT_WEB_VIEW(dynamic_cast<WebKitEngine&>(chat->loadView()->engine()).widget());
    const auto words = [&] { return evaluateIn(view, "document.querySelector('[role=status]')?.textContent"); };
    EXPECT_TRUE(wait([&, expected = text] { return words() == expected; }, 5)) << words();
    window()->rootViewController()->dismiss(false);
    recorder->events.clear();
  }
}

class NotchedPhone : public ScreenFixture {
 protected:
  NotchedPhone() : ScreenFixture({47, {59, 0, 34, 0}}) {}
};

TEST_F(NotchedPhone, TellsThePageOfItsSurroundingsAndGivesItTheHiddenAreas) {
  const SocketServer server(servePage(
      "<iframe srcdoc=frame></iframe><script>window.atItsStart = JSON.stringify(window.extraParams);</script>" +
      readyPage));
  const auto chat = openChat(server.url(""));
  EXPECT_EQ(evaluate(*chat, "atItsStart"), R"({"app_name":"kep","env_name":"test","hh":47,"bh":34,"os_name":"iOS"})");
  EXPECT_EQ(evaluate(*chat, "String(frames[0].extraParams)"), "undefined") << "a frame is told, too";
  EXPECT_EQ(chat->webView()->frame(), (Rect{0, 0, 360, 47 + 720 + 34}));
  EXPECT_TRUE(wait([&] { return evaluate(*chat, "innerWidth + 'x' + innerHeight") == "360x801"; }, 5))
      << evaluate(*chat, "innerWidth + 'x' + innerHeight");
  EXPECT_NE(evaluate(*chat, "location.search").find("&hh=47.0&bh=34.0&object_value="), std::string::npos);
}

}  // namespace
}  // namespace orivex::gtk
