#include <cstdlib>
#include <filesystem>

#include "ScreenFixture.h"
#include "TlsServer.h"

#include "orivex/media/ChatManager.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

class Failure : public ScreenFixture {
 protected:
  // Seconds from showing the screen until it is gone; the visitor reads the message meanwhile.
  double secondsUntilClosed(const std::string& server, double patience) {
    const auto chat = startChat(server);
    const gint64 start = g_get_monotonic_time();
    window()->rootViewController()->present(chat, false);
    EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, patience));
    return static_cast<double>(g_get_monotonic_time() - start) / G_USEC_PER_SEC;
  }
};

TEST_F(Failure, ARefusedTokenClosesTheScreenAfterItsMessage) {
  for (const int status : {401, 404, 503}) {
    const SocketServer server([status](const std::string&) { return SocketServer::Answer{reply(status, "{}")}; });
    EXPECT_GE(secondsUntilClosed(server.url(""), 10), 2.0) << status;
    EXPECT_TRUE(log.has("Response Status Code: " + std::to_string(status)));
  }
}

TEST_F(Failure, ASilentServerIsGivenFiveSeconds) {
  const SocketServer server([](const std::string&) { return SocketServer::Answer{"", SocketServer::Then::silence}; });
  const double seconds = secondsUntilClosed(server.url(""), 15);
  EXPECT_GE(seconds, 7.0);
  EXPECT_TRUE(log.has("请求超时"));
}

TEST_F(Failure, NobodyListeningIsToldAndClosed) {
  EXPECT_GE(secondsUntilClosed("http://127.0.0.1:1", 10), 2.0);
  EXPECT_TRUE(log.has("请求失败："));
}

TEST_F(Failure, ARedirectIsFollowedToThePageThatCounts) {
  const SocketServer server([](const std::string& target) {
    if (target.starts_with(chatPath)) return SocketServer::Answer{reply(302, "", "Location: /moved\r\n")};
    return SocketServer::Answer{reply(200, "<script>" + raise("ready") + "</script>", "Content-Type: text/html\r\n")};
  });
  const auto chat = openChat(server.url(""));
  EXPECT_EQ(evaluate(*chat, "location.pathname"), "/moved");
  EXPECT_TRUE(log.has("Redirected"));
}

TEST_F(Failure, APageThatGoesAwayBetweenCheckAndLoadIsTold) {
  auto asked = std::make_shared<std::atomic<int>>(0);
  const SocketServer server([asked](const std::string&) {
    if ((*asked)++ == 0) return SocketServer::Answer{reply(200, "")};
    return SocketServer::Answer{"", SocketServer::Then::reset};
  });
  const auto chat = startChat(server.url(""));
  window()->rootViewController()->present(chat, false);
  EXPECT_TRUE(wait([&] { return log.has("Load failed"); }, 10));
  EXPECT_TRUE(chat->isViewInWindow()) << "a failed load is shown, the screen stays";
}

TEST_F(Failure, AnUnknownCertificateIsToldAndNeverShown) {
  const TlsServer secure;
  EXPECT_GE(secondsUntilClosed(secure.url(), 10), 2.0) << "as the chat's own server";
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>chat"));
  const auto chat = openChat(server.url(""));
  chat->webView()->evaluate("location.href = '" + secure.url() + "'");
  EXPECT_TRUE(wait([&] { return panelText() == "请求失败,请稍后重试"; }, 10)) << "as where the page goes";
  EXPECT_EQ(evaluate(*chat, "document.body.textContent"), "chat");
}

TEST_F(Failure, HostTextsThatMakeNoAddressLeaveTheEarlierOne) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  const auto good = startChat(server.url(""));
  const auto kept = ChatManager::shared().instanceURL;
  ASSERT_TRUE(kept);
  for (const char* host : {"http://a b", "http://[::1", "http://host:99999", "\x01", "http://\xff", "<x>"}) {
    startChat(host);
    EXPECT_EQ(ChatManager::shared().instanceURL, kept) << host;
  }
}

/// A device on which nothing can be written and nobody answers on the desktop's bus.
class BareMachine : public ::testing::Test {
 protected:
  BareMachine() {
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
      setenv(folder, "/proc/no-such-folder", 1);
    }
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/proc/no-such-bus", 1);
  }
};

class OnABareMachine : public BareMachine {};

TEST_F(OnABareMachine, TheChatOpensAllTheSame) {
  class Screens : public ScreenFixture {
   public:
    void TestBody() override {
      const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
      const auto chat = openChat(server.url(""));
      EXPECT_EQ(evaluate(*chat, "1 + 1"), "2");
    }
  } screens;
  screens.TestBody();
}

}  // namespace
}  // namespace orivex::gtk
