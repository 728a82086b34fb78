#include <adwaita.h>

#include "support/ScreenFixture.h"
#include "support/Visitor.h"
#include "ui/views/ContentWidgets.h"

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

// The darkness and the opacity of a point of a picture, each from 0 to 255.
std::pair<int, int> pointOf(GdkPaintable* picture, int x, int y) {
  auto* const drawing = gtk_snapshot_new();
  gdk_paintable_snapshot(picture, drawing, 360, 720);
  auto* const node = gtk_snapshot_free_to_node(drawing);
  auto* const surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 360, 720);
  auto* const context = cairo_create(surface);
  gsk_render_node_draw(node, context);
  cairo_surface_flush(surface);
  const auto* const bytes = cairo_image_surface_get_data(surface) + std::ptrdiff_t{4} * (360 * y + x);
  const std::pair point{255 - bytes[1], bytes[3]};
  cairo_destroy(context);
  cairo_surface_destroy(surface);
  gsk_render_node_unref(node);
  return point;
}

TEST_F(EdgeSwipe, ShowsTheHostOnItsOwnBackground) {
  auto* const style = adw_style_manager_get_default();
  for (const auto scheme : {ADW_COLOR_SCHEME_FORCE_LIGHT, ADW_COLOR_SCHEME_FORCE_DARK}) {
    adw_style_manager_set_color_scheme(style, scheme);
    pass(0.5);
    const auto chat = startChat("https://chat.example");
    const auto& behind = dynamic_cast<const WidgetView&>(*chat->previousViewSnapshot());
    const auto [darkness, opacity] = pointOf(gtk_picture_get_paintable(GTK_PICTURE(behind.widget())), 10, 10);
    EXPECT_EQ(opacity, 255);
    EXPECT_EQ(darkness > 128, scheme == ADW_COLOR_SCHEME_FORCE_DARK);
  }
  adw_style_manager_set_color_scheme(style, ADW_COLOR_SCHEME_DEFAULT);
}

}  // namespace
}  // namespace orivex::gtk
