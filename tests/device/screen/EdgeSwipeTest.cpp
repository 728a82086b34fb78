#include <array>

#include "glib/GRef.h"
#include "glib/SignalConnection.h"
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

  using Pixel = std::array<guchar, 4>;  // blue, green, red, alpha

  /// What `shown` has at a point when it is as large as the window.
  Pixel pixel(GdkPaintable* shown, int x, int y) const {
    auto* const drawing = gtk_snapshot_new();
    gdk_paintable_snapshot(shown, drawing, 360, 720);
    auto* const node = gtk_snapshot_free_to_node(drawing);
    const graphene_rect_t point{{static_cast<float>(x), static_cast<float>(y)}, {1, 1}};
    const auto texture = GRef<GdkTexture>::adopt(
        gsk_renderer_render_texture(gtk_native_get_renderer(GTK_NATIVE(gtkWindow())), node, &point));
    gsk_render_node_unref(node);
    Pixel read{};
    gdk_texture_download(texture.get(), read.data(), read.size());
    return read;
  }

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
  const auto shown = GRef<GdkPaintable>::adopt(gtk_widget_paintable_new(GTK_WIDGET(gtkWindow())));
  EXPECT_TRUE(wait([&] { return pixel(shown.get(), 78, 400) < pixel(shown.get(), 20, 400); }, 20)) << "no shadow";
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

TEST_F(EdgeSwipe, LeadsBackToAHostWhoseButtonIsNotPressed) {
  const auto style = GRef<GtkCssProvider>::adopt(gtk_css_provider_new());
  gtk_css_provider_load_from_data(style.get(),
                                  "button.help { background: #0000ff; transition: background 100s linear; }"
                                  "button.help:active { background: #ff0000; transition: none; }",
                                  -1);
  auto* const display = gtk_widget_get_display(GTK_WIDGET(gtkWindow()));
  gtk_style_context_add_provider_for_display(display, GTK_STYLE_PROVIDER(style.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  GtkWidget* const button = gtk_button_new();
  gtk_widget_add_css_class(button, "help");
  gtk_window_set_child(gtkWindow(), button);
  const auto picture = [&](const OVKFApi& chat) {
    const auto* const view = dynamic_cast<const WidgetView*>(chat.previousViewSnapshot().get());
    return view ? pixel(gtk_picture_get_paintable(GTK_PICTURE(view->widget())), 100, 400) : Pixel{};
  };
  std::vector<Pixel> pictures;
  const auto clicked = SignalConnection::connect(button, "clicked", [&] {
    gtk_button_set_label(GTK_BUTTON(button), "Opening");  // with the next frame
    pictures.push_back(picture(*startChat("http://chat.invalid")));
  });
  pass(0.2);
  hands("touch-down", 100, 400);
  EXPECT_TRUE(wait([&] { return (gtk_widget_get_state_flags(button) & GTK_STATE_FLAG_ACTIVE) != 0; }, 20));
  pass(0.1);
  const auto live = GRef<GdkPaintable>::adopt(gtk_widget_paintable_new(button));
  EXPECT_EQ(pixel(live.get(), 100, 400), (Pixel{0, 0, 255, 255}));
  release();
  EXPECT_TRUE(wait([&] { return pictures.size() == 1; }, 20));
  pass(0.2);
  pictures.push_back(picture(*startChat("http://chat.invalid")));  // a moment later, as it fades
  EXPECT_EQ(pictures, std::vector<Pixel>(2, Pixel{255, 0, 0, 255}));
  gtk_style_context_remove_provider_for_display(display, GTK_STYLE_PROVIDER(style.get()));
}

}  // namespace
}  // namespace orivex::gtk
