#include "support/ScreenFixture.h"
#include "support/Visitor.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

class EdgeSwipe : public ScreenFixture {
 protected:
  void press(int x, int y) {
    at_ = {x, y};
    hands("touch-down", x, y);
  }
  void moveBy(int x, int y) {
    for (int step = 1; step <= 4; ++step) {
      hands("touch-move", at_.first + x * step / 4, at_.second + y * step / 4);
    }
  }
  static void release() { hands("touch-up"); }

 private:
  std::pair<int, int> at_;
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

TEST_F(EdgeSwipe, CancelsWhatTheFingerHasPressedInThePage) {
  const SocketServer server(servePage(
      "<body style='margin:0'><button id=talk style='width:300px;height:300px'>talk</button><script>window.story = '';"
      "for (const kind of ['pointerdown', 'pointerup', 'pointercancel'])"
      "  talk.addEventListener(kind, (event) => story += kind + event.pointerId + ' ');"
      "webkit.messageHandlers.initLoaded.postMessage(null);" +
      raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  ASSERT_TRUE(wait([&] { return chat->isLoaded(); }, 10));
  pass(0.6);
  press(5, 100);
  ASSERT_TRUE(wait([&] { return evaluate(*chat, "story").starts_with("pointerdown"); }, 5));
  const auto pointer = evaluate(*chat, "story").substr(11);
  moveBy(80, 4);
  EXPECT_TRUE(wait([&] { return evaluate(*chat, "story") == "pointerdown" + pointer + "pointercancel" + pointer; }, 5))
      << evaluate(*chat, "story");
  release();
  EXPECT_TRUE(wait([&] { return chat->webView()->transform() == Translation{}; }, 5));
  EXPECT_EQ(evaluate(*chat, "story"), "pointerdown" + pointer + "pointercancel" + pointer);
}

}  // namespace
}  // namespace orivex::gtk
