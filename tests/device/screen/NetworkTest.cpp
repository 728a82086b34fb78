#include <csignal>

#include "ServerProcess.h"
#include "support/ScreenFixture.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

using testing::ServerProcess;

// Seconds within which a visitor has read something: ten, which the virtual device holds to the millisecond, and room
// for a busy machine.
constexpr double patience = 15;

constexpr const char* lost = "/连接已断开|Connection lost/.test(document.body.innerText)";

class Network : public ScreenFixture {
 protected:
  std::shared_ptr<OVKFApi> present(const std::string& server) {
    auto chat = startChat(server);
    window()->rootViewController()->present(chat, false);
    EXPECT_TRUE(wait([&] { return chat->isLoaded(); }, 20)) << "the page did not come up";
    EXPECT_TRUE(isOnline(*chat));
    return chat;
  }

  static bool isOnline(OVKFApi& chat) {
    constexpr const char* online =
        "!/连接已断开|Connection lost|连接中|Connecting/.test(document.body.innerText) && "
        "document.body.innerText.length > 20";
    return wait([&] { return evaluate(chat, online) == "true"; }, 30);
  }
};

TEST_F(Network, AServerThatGoesInTheMiddleIsToldByThePageWhichComesBackWithIt) {
  auto server = std::make_unique<ServerProcess>();
  const auto address = server->address();
  const auto port = server->port();
  const auto chat = present(address);
  server->closeInput();
  server->waitForEnd();
  EXPECT_TRUE(wait([&] { return evaluate(*chat, lost) == "true"; }, patience));
  EXPECT_TRUE(chat->isViewInWindow());

  // A navigation without a network is told by the component, and the page stays.
  chat->webView()->evaluate("location.reload()");
  EXPECT_TRUE(wait([&] { return panelText() == "请求失败,请稍后重试"; }, patience));
  EXPECT_TRUE(chat->isViewInWindow());

  server = std::make_unique<ServerProcess>(std::vector<std::string>{"--port", std::to_string(port)});
  EXPECT_TRUE(isOnline(*chat)) << "the same screen does not come back";
  chat->close();
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
  present(address);
}

TEST_F(Network, AServerThatFreezesIsToldByThePageToTheOneWhoWrites) {
  ServerProcess server({"--agent-delay", "2000"});
  const auto chat = present(server.address());
  const auto write = [&] {
    evaluate(*chat, R"((() => {
      document.querySelector("#message-input").value = "question";
      document.querySelector("#message-input").dispatchEvent(new Event("input", { bubbles: true }));
      document.querySelector("#composer").requestSubmit();
    })())");
  };
  const auto isTold = [&] {
    EXPECT_TRUE(wait([&] { return evaluate(*chat, lost) == "true"; }, patience));
    server.sendSignal(SIGCONT);
    EXPECT_TRUE(isOnline(*chat)) << "the same page does not come back";
  };
  const auto types = [&](const char* is) {
    return wait([&] { return evaluate(*chat, "!document.querySelector('#typing').hidden") == is; }, patience);
  };
  server.sendSignal(SIGSTOP);
  write();
  isTold();
  EXPECT_TRUE(types("true") && types("false")) << "the answer does not come";
  write();
  EXPECT_TRUE(types("true"));
  server.sendSignal(SIGSTOP);
  isTold();
}

/// The network behind a proxy, which the page's network process learns when it starts.
class ProxiedNetwork : public Network {
 protected:
  static void SetUpTestSuite() {
    proxy = std::make_unique<SocketServer>([](const std::string& target) {
      return target.starts_with(origin) ? serve(target.substr(std::string(origin).size())) : SocketServer::Answer{};
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

}  // namespace
}  // namespace orivex::gtk
