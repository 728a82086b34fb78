#include <cstdlib>
#include <filesystem>

#include "support/ScreenFixture.h"
#include "support/TlsServer.h"

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

TEST_F(Failure, AnUnknownCertificateIsToldAndNeverShown) {
  const TlsServer secure;
  EXPECT_GE(secondsUntilClosed(secure.url(), 10), 2.0) << "as the chat's own server";
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
