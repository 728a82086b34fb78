#include <cstdlib>
#include <filesystem>

#include "support/ScreenFixture.h"
#include "support/TlsServer.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

using Failure = ScreenFixture;

TEST_F(Failure, AnUnknownCertificateIsToldAndNeverShown) {
  const TlsServer secure;
  const auto refused = startChat(secure.url());
  window()->rootViewController()->present(refused, false);
  EXPECT_TRUE(wait([&] { return panelText() == "请求失败,请稍后重试"; }, 10))
      << "as the chat's own server: " << panelText();
  EXPECT_TRUE(wait([&] { return !refused->isViewInWindow(); }, 10));
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>chat"));
  const auto chat = openChat(server.url(""));
  chat->webView()->evaluate("location.href = '" + secure.url() + "'");
  EXPECT_TRUE(wait([&] { return panelText() == "请求失败,请稍后重试"; }, 10)) << "as where the page goes";
  EXPECT_EQ(evaluate(*chat, "document.body.textContent"), "chat");
}

/// A device on which nothing can be written and nobody answers on the desktop's bus.
struct BareMachine {
  BareMachine() {
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
      setenv(folder, "/proc/no-such-folder", 1);
    }
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/proc/no-such-bus", 1);
  }
};

// The machine comes before the window.
class OnABareMachine : private BareMachine, public ScreenFixture {};

TEST_F(OnABareMachine, TheChatOpensAllTheSame) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  EXPECT_EQ(evaluate(*chat, "1 + 1"), "2");
}

}  // namespace
}  // namespace orivex::gtk
