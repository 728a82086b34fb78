#include <string>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GRef.h"
#include "support/ScreenFixture.h"
#include "support/TemporaryFolder.h"
#include "support/Visitor.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

class Phone : public ScreenFixture {
 protected:
  /// The colour that the visitor sees at a point of the screen, as "rrggbb".
  static std::string colorAt(int x, int y) {
    const TemporaryFolder folder;
    const std::string file = folder.path() / "screen.png";
    hands({"screenshot", file});
    const auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file(file.c_str(), nullptr));
    if (!picture) return "no picture";
    const auto* const pixel = gdk_pixbuf_read_pixels(picture.get()) +
                              std::ptrdiff_t{y} * gdk_pixbuf_get_rowstride(picture.get()) +
                              std::ptrdiff_t{x} * gdk_pixbuf_get_n_channels(picture.get());
    char text[7];
    std::snprintf(text, sizeof text, "%02x%02x%02x", pixel[0], pixel[1], pixel[2]);
    return text;
  }
};

TEST_F(Phone, ThePageShowsOverAShopThatHasBeenPainted) {
  const SocketServer server(
      servePage("<body style='background:#00c000'><script>webkit.messageHandlers.initLoaded.postMessage(null);" +
                raise("ready") + "</script>"));
  const auto chat = openChat(server.url(""));
  ASSERT_TRUE(wait([&] { return chat->loadView()->superview() == nullptr; }, 10));
  EXPECT_TRUE(wait([&] { return colorAt(180, 360) == "00c000"; }, 20)) << "it shows " << colorAt(180, 360);
}

}  // namespace
}  // namespace orivex::gtk
