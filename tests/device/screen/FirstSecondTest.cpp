#include <algorithm>
#include <array>

#include "glib/GRef.h"
#include "glib/SignalConnection.h"
#include "support/ScreenFixture.h"
#include "support/Visitor.h"
#include "support/Widgets.h"
#include "web/WebKitEngine.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

/// A visitor who has opened the chat of a server that never answers.
class FirstSecond : public ScreenFixture {
 protected:
  void open() {
    chat_ = startChat(server_.url(""));
    window()->rootViewController()->present(chat_, false);
  }

  /// Whether the window now shows a shape at this point.
  bool isDrawnAt(int x, int y) const {
    auto* const widget = GTK_WIDGET(gtkWindow());
    const auto live = GRef<GdkPaintable>::adopt(gtk_widget_paintable_new(widget));
    auto* const drawing = gtk_snapshot_new();
    gdk_paintable_snapshot(live.get(), drawing, gtk_widget_get_width(widget), gtk_widget_get_height(widget));
    auto* const node = gtk_snapshot_free_to_node(drawing);
    auto* const renderer = gtk_native_get_renderer(GTK_NATIVE(gtkWindow()));
    const graphene_rect_t point{{static_cast<float>(x), static_cast<float>(y)}, {1, 1}};
    const auto texture = GRef<GdkTexture>::adopt(gsk_renderer_render_texture(renderer, node, &point));
    gsk_render_node_unref(node);
    std::array<guchar, 4> pixel{};
    gdk_texture_download(texture.get(), pixel.data(), pixel.size());
    return pixel[0] < 250;
  }

  std::shared_ptr<OVKFApi> chat_;

 private:
  const SocketServer server_{[](const std::string&) { return SocketServer::Answer{"", SocketServer::Then::silence}; }};
};

TEST_F(FirstSecond, ThePlaceholderIsDrawnFromItsFirstFrameOn) {
  std::vector<bool> drawn;
  auto* const clock = gtk_widget_get_frame_clock(GTK_WIDGET(gtkWindow()));
  const auto painted = SignalConnection::connect(clock, "after-paint", [&] {
    if (chat_ && chat_->isViewInWindow()) drawn.push_back(isDrawnAt(56, 30));
  });
  open();
  // Past the page's own first frame.
  auto* const skeleton = WEBKIT_WEB_VIEW(dynamic_cast<WebKitEngine&>(chat_->loadView()->engine()).widget());
  EXPECT_TRUE(wait([&] { return webkit_web_view_get_estimated_load_progress(skeleton) == 1 && drawn.size() > 5; }, 30));
  pass(0.5);
  EXPECT_EQ(std::count(drawn.begin(), drawn.end(), false), 0);
}

TEST_F(FirstSecond, AButtonLeadsBackFromAPageThatNeverComes) {
  for (const bool byKeys : {false, true}) {
    SCOPED_TRACE(byKeys);
    takeKeyboard();
    open();
    GtkWidget* button = nullptr;
    ASSERT_TRUE(wait(
        [&] {
          button = findByClass(GTK_WIDGET(gtkWindow()), "orivex-sign");
          return button && gtk_widget_get_width(button) > 0;
        },
        10));
    EXPECT_GE(gtk_widget_get_width(button), 44);
    EXPECT_GE(gtk_widget_get_height(button), 44);
    if (byKeys) {
      hands({"key", "Escape"});
    } else {
      hands({"click", "22", "30"});
    }
    EXPECT_TRUE(wait([&] { return !chat_->isViewInWindow(); }, 20));
    chat_->close();
  }
}

}  // namespace
}  // namespace orivex::gtk
