#include "ScreenFixture.h"
#include "WebTools.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

class EdgeSwipe : public ScreenFixture {
 protected:
  static void press(int x, int y) { visitor({"mousemove", std::to_string(x), std::to_string(y), "mousedown", "1"}); }
  static void moveBy(int x, int y) {
    for (int step = 0; step < 4; ++step) {
      visitor({"mousemove_relative", "--", std::to_string(x / 4), std::to_string(y / 4)});
    }
  }
  static void release() { visitor({"mouseup", "1"}); }
};

TEST_F(EdgeSwipe, MovesThePageAndNothingInIt) {
  const SocketServer server(
      servePage("<body style='margin:0'>" + std::string(200, 'w') +
                "<div style='height:2000px'></div><script>window.clicks = 0;"
                "addEventListener('click', () => ++clicks); webkit.messageHandlers.initLoaded.postMessage(null);" +
                raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  ASSERT_TRUE(wait([&] { return chat->isLoaded(); }, 10));
  pass(0.6);
  const auto& page = *chat->webView();
  const auto inside = [&] { return evaluate(*chat, "`${clicks} ${scrollY} ${getSelection()}`"); };

  press(5, 10);
  moveBy(80, 4);
  EXPECT_EQ(page.transform(), (Translation{80, 0}));
  release();
  EXPECT_TRUE(wait([&] { return page.transform() == Translation{}; }, 5)) << "it has not gone back";
  EXPECT_EQ(inside(), "0 0 ");

  press(5, 10);
  release();
  EXPECT_TRUE(wait([&] { return inside() == "1 0 "; }, 5)) << "the edge takes clicks from the page: " << inside();

  press(5, 10);
  moveBy(0, 80);
  EXPECT_EQ(page.transform(), Translation{}) << "a finger that goes down is the page's";
  release();

  press(5, 10);
  moveBy(200, 0);
  EXPECT_EQ(page.transform(), (Translation{200, 0}));
  EXPECT_TRUE(chat->isViewInWindow());
  release();
  EXPECT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
}

}  // namespace
}  // namespace orivex::gtk
