#include <string>

#include "support/ScreenFixture.h"
#include "support/Visitor.h"

namespace orivex::gtk {
namespace {

// What a page hears of fingers on its button of 300 by 300 points; below it there is more to scroll to.
class Touch : public ScreenFixture {
 protected:
  void open(const std::string& style, const std::string& more = "") {
    server_ = std::make_unique<SocketServer>(
        servePage("<body style='margin:0'><div id=list style='height:600px;overflow:auto'><button id=talk "
                  "style='width:300px;height:300px;" +
                  style +
                  "'>talk</button><div style='height:2000px'></div></div><script>window.story = '';"
                  "for (const kind of ['pointerdown', 'pointermove', 'pointerup', 'pointercancel', 'click'])"
                  "  talk.addEventListener(kind, (event) => {"
                  "    const word = `${event.type.replace('pointer', '')}:${event.pointerType} `;"
                  "    if (!story.endsWith(word)) story += word; });" +
                  more + "webkit.messageHandlers.initLoaded.postMessage(null);" + raise("ready") + "</script>"));
    chat_ = openChat(server_->url(""));
    ASSERT_TRUE(wait([&] { return chat_->isLoaded(); }, 10));
    // The first touches may come before the page's first frame, and are lost then.
    ASSERT_TRUE(wait(
        [&] {
          hands("tap", 150, 150);
          pass(0.3);
          return !story().empty();
        },
        10));
    pass(1);
    evaluate(*chat_, "story = ''");
  }
  std::string story() { return evaluate(*chat_, "story"); }
  void slide(int fromY, int toY) {
    for (int step = 1; step <= 5; ++step) hands("touch-move", 150, fromY + (toY - fromY) * step / 5);
  }

 private:
  std::unique_ptr<SocketServer> server_;

 protected:
  std::shared_ptr<OVKFApi> chat_;
};

TEST_F(Touch, AHeldFingerIsKnownAsLongAsItIsHeld) {
  open("touch-action:none",
       "talk.addEventListener('pointerdown', (event) => talk.setPointerCapture(event.pointerId));");
  hands("touch-down", 150, 150);
  EXPECT_TRUE(wait([&] { return story() == "down:touch "; }, 5)) << story();
  pass(1.2);  // longer than WebKit takes for a long press
  slide(150, 40);
  EXPECT_TRUE(wait([&] { return story() == "down:touch move:touch "; }, 5)) << story();
  hands("touch-up");
  EXPECT_TRUE(wait([&] { return story() == "down:touch move:touch up:touch "; }, 5)) << story();
  pass(1);
  EXPECT_EQ(story(), "down:touch move:touch up:touch ") << "the press comes a second time";
  EXPECT_EQ(evaluate(*chat_, "String(list.scrollTop)"), "0");
}

TEST_F(Touch, ATapIsOnePressAndAClick) {
  open("");
  hands("tap", 150, 150);
  EXPECT_TRUE(wait([&] { return story() == "down:touch up:touch click:mouse "; }, 5)) << story();
  hands("click", 100, 100);
  EXPECT_TRUE(wait([&] { return story().ends_with("down:mouse up:mouse click:mouse "); }, 5)) << story();
}

TEST_F(Touch, APageThatScrollsTakesItsFingerBack) {
  open("touch-action:auto");
  hands("swipe", 150, 250, 150, 50);
  EXPECT_TRUE(wait([&] { return evaluate(*chat_, "String(list.scrollTop > 0)") == "true"; }, 5));
  EXPECT_TRUE(story().starts_with("down:touch move:touch cancel:touch ")) << story();
}

}  // namespace
}  // namespace orivex::gtk
