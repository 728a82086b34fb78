#include <webkit/webkit.h>

#include "ScreenFixture.h"
#include "web/WebKitEngine.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

void killPage(OVKFApi& chat) {
  webkit_web_view_terminate_web_process(
      WEBKIT_WEB_VIEW(dynamic_cast<WebKitEngine&>(chat.webView()->engine()).widget()));
}

class ProcessDeath : public ScreenFixture {
 protected:
  std::size_t readyCount() const { return recorder->events.size(); }
};

TEST_F(ProcessDeath, ThePageComesBackAndWorks) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  killPage(*chat);
  ASSERT_TRUE(wait([&] { return readyCount() == 2; }, 10)) << "no page after its process died";
  EXPECT_EQ(evaluate(*chat, "1 + 1"), "2");
  EXPECT_EQ(chat->webView()->url().value_or("").find(server.url(chatPath)), 0U);
}

TEST_F(ProcessDeath, APageThatDiesAgainAndAgainEndsInAMessageAndTheHostIsFree) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  for (std::size_t death = 1; death <= 3; ++death) {
    killPage(*chat);
    ASSERT_TRUE(wait([&] { return readyCount() == death + 1; }, 10)) << death;
  }
  killPage(*chat);
  EXPECT_TRUE(wait([&] { return log.has("lost its process too often"); }, 5));
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 10)) << "the visitor is not left with a white page";
  EXPECT_EQ(readyCount(), 4U);
}

}  // namespace
}  // namespace orivex::gtk
