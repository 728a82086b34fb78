#include "ServerProcess.h"
#include "support/ScreenFixture.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

using testing::ServerProcess;

// Seconds within which a visitor has read something: ten, which the virtual device holds to the millisecond, and room
// for a busy machine.
constexpr double patience = 15;

class Network : public ScreenFixture {
 protected:
  // A server where `before` was.
  static std::unique_ptr<ServerProcess> restarted(std::uint16_t port) {
    return std::make_unique<ServerProcess>(std::vector<std::string>{"--port", std::to_string(port)});
  }

  static void stop(std::unique_ptr<ServerProcess>& server) {
    server->closeInput();
    server->waitForEnd();
    server.reset();
  }

  std::shared_ptr<OVKFApi> present(const std::string& server) {
    auto chat = startChat(server);
    window()->rootViewController()->present(chat, false);
    return chat;
  }

  // Whether the visitor reads one of `texts` in the component's panel.
  bool reads(const std::vector<std::string>& texts) {
    return wait(
        [&] {
          const auto shown = panelText();
          return std::any_of(texts.begin(), texts.end(),
                             [&](const auto& text) { return shown.find(text) != std::string::npos; });
        },
        patience);
  }

  void expectThatAChatOpensAndWorks(const std::string& server) {
    const auto chat = present(server);
    ASSERT_TRUE(wait([&] { return chat->isLoaded(); }, 20)) << "the page did not come up";
    EXPECT_TRUE(wait([&] { return evaluate(*chat, online) == "true"; }, 20)) << "the page has no connection";
    window()->rootViewController()->dismiss(false);
  }

  // How the page says that its connection is lost, in either of its languages.
  static constexpr const char* lost = "/连接已断开|Connection lost/.test(document.body.innerText)";
  static constexpr const char* online =
      "!/连接已断开|Connection lost|连接中|Connecting/.test(document.body.innerText) && "
      "document.body.innerText.length > 20";
};

TEST_F(Network, AnOfflineStartIsToldAndTheNextOneWorks) {
  auto server = std::make_unique<ServerProcess>();
  const auto address = server->address();
  const auto port = server->port();
  stop(server);
  const auto chat = present(address);
  EXPECT_TRUE(reads({"请求失败"}));
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5)) << "no placeholder for ever";
  server = restarted(port);
  expectThatAChatOpensAndWorks(address);
}

TEST_F(Network, ANetworkThatIsLostWhileThePageLoadsIsToldAndTheNextStartWorks) {
  auto asked = std::make_shared<std::atomic<int>>(0);
  const SocketServer dead([asked](const std::string&) {
    if ((*asked)++ == 0) return SocketServer::Answer{reply(200, "")};
    return SocketServer::Answer{"", SocketServer::Then::silence};
  });
  const auto chat = present(dead.url(""));
  EXPECT_TRUE(reads({"服务请求超时"}));
  chat->close();
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
  const ServerProcess server;
  expectThatAChatOpensAndWorks(server.address());
}

TEST_F(Network, AServerThatGoesInTheMiddleIsToldByThePageWhichComesBackWithIt) {
  auto server = std::make_unique<ServerProcess>();
  const auto address = server->address();
  const auto port = server->port();
  const auto chat = present(address);
  ASSERT_TRUE(wait([&] { return chat->isLoaded(); }, 20));
  ASSERT_TRUE(wait([&] { return evaluate(*chat, online) == "true"; }, 10));
  stop(server);
  EXPECT_TRUE(wait([&] { return evaluate(*chat, lost) == "true"; }, patience));
  EXPECT_TRUE(chat->isViewInWindow());

  // A navigation without a network is told by the component, and the page stays.
  chat->webView()->evaluate("location.reload()");
  EXPECT_TRUE(reads({"请求失败,请稍后重试"}));
  EXPECT_TRUE(chat->isViewInWindow());

  server = restarted(port);
  EXPECT_TRUE(wait([&] { return evaluate(*chat, online) == "true"; }, 30)) << "the same screen does not come back";
  chat->close();
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
  expectThatAChatOpensAndWorks(address);
}

/// The network behind a proxy, which the page's network process learns when it starts.
class ProxiedNetwork : public Network {
 protected:
  static void SetUpTestSuite() {
    proxy = std::make_unique<SocketServer>([](const std::string& target) {
      if (target.starts_with(origin)) return serve(target.substr(std::string(origin).size()));
      return SocketServer::Answer{reply(407, "x", "Proxy-Authenticate: Basic realm=\"x\"\r\n")};
    });
    g_setenv("http_proxy", proxy->url("").c_str(), TRUE);
    g_setenv("no_proxy", "127.0.0.1", TRUE);
  }
  static void TearDownTestSuite() {
    g_unsetenv("http_proxy");
    proxy.reset();
  }

  static constexpr const char* origin = "http://chat.invalid";
  static inline const SocketServer::Handler serve = servePage("<p>chat<script>" + raise("ready") + "</script>");
  static inline std::unique_ptr<SocketServer> proxy;
};

// The page and the component's own client ask the same desktop.
TEST_F(ProxiedNetwork, LeadsToTheChatUnlessItsHostIsAnException) {
  const SocketServer server(serve);
  for (const auto& address : {std::string(origin), server.url("")}) {
    recorder->events.clear();
    openChat(address);
    window()->rootViewController()->dismiss(false);
  }
}

TEST_F(ProxiedNetwork, AProxyThatWantsAPasswordIsToldAsAFailure) {
  const auto chat = present("http://refused.invalid");
  EXPECT_TRUE(reads({"请求失败,请稍后重试"}));
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5)) << "no placeholder for ever";
}

}  // namespace
}  // namespace orivex::gtk
