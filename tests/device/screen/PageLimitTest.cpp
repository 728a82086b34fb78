#include "PageFixture.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

class PageLimit : public PageFixture {
 protected:
  using PageFixture::PageFixture;

  // What the context menu at a point of the page offers, as WebKit's numbers; the menu itself is kept from opening.
  std::vector<int> menuAt(int x, int y) {
    std::optional<std::vector<int>> actions;
    const auto note = +[](WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer data) -> gboolean {
      auto& into = static_cast<std::optional<std::vector<int>>*>(data)->emplace();
      for (const GList* item = webkit_context_menu_get_items(menu); item; item = item->next) {
        into.push_back(webkit_context_menu_item_get_stock_action(WEBKIT_CONTEXT_MENU_ITEM(item->data)));
      }
      return TRUE;
    };
    const auto id = g_signal_connect(view(), "context-menu", G_CALLBACK(note), &actions);
    hands("click", x, y, 3);
    wait([&] { return actions.has_value(); }, 2);
    g_signal_handler_disconnect(view(), id);
    return actions.value_or(std::vector<int>());
  }
};

TEST_F(PageLimit, PermissionsAreRefusedWithALineEach) {
  open("page");
  const struct {
    const char* what;
    const char* script;
  } cases[] = {
      {"location", "new Promise((yes, no) => navigator.geolocation.getCurrentPosition(yes, no))"},
      {"notifications", "Notification.requestPermission().then((state) => { if (state !== 'granted') throw state; })"},
      {"microphone", "navigator.mediaDevices.getUserMedia({audio: true})"},
      {"camera", "navigator.mediaDevices.getUserMedia({video: true})"},
  };
  int lines = 0;
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    run(std::string("window.answer = 'none'; (async () => ") + row.script +
        ")().then(() => { window.answer = 'granted'; }, () => { window.answer = 'refused'; }); 0");
    EXPECT_TRUE(becomes("window.answer", "refused"));
    lines = log.count("refused a permission");
  }
  EXPECT_GE(lines, 1);
  EXPECT_LE(lines, static_cast<int>(std::size(cases)));
}

TEST_F(PageLimit, ThePageStaysWhatAndWhereItIs) {
  open("page", {{"/next", {reply(200, "next", htmlHeader)}}});
  EXPECT_EQ(evaluate("!document.fullscreenEnabled"), "true");
  evaluate("window.print(); 0");
  EXPECT_TRUE(wait([&] { return log.has("wants to print"); }, 10));
  run("location.href = '/next'");
  ASSERT_TRUE(becomes("location.pathname", "/next"));
  ASSERT_TRUE(wait([&] { return finished() == 2; }, 10));
  hands("click", 100, 300);
  for (const char* keys : {"alt+Left", "F5", "ctrl+r", "ctrl+plus", "ctrl+equal", "ctrl+minus", "XF86Back", "F11", "F7",
                           "ctrl+shift+i", "ctrl+p", "ctrl+s", "BackSpace"}) {
    hands({"key", keys});
  }
  hands("click", 100, 300, 8);
  hands({"key-down", "ctrl"});
  hands("scroll", -2);
  hands("scroll", 1);
  hands({"key-up", "ctrl"});
  pass(1.5);  // a caret that should not be there has begun to blink by then
  EXPECT_EQ(evaluate("location.pathname"), "/next");
  EXPECT_EQ(finished(), 2) << "a key has loaded the page anew";
  EXPECT_EQ(evaluate("visualViewport.scale * 100 + ',' + innerWidth"), "100,360");
  EXPECT_EQ(webkit_web_view_get_zoom_level(view()), 1.0);
  EXPECT_FALSE(gtk_window_is_fullscreen(GTK_WINDOW(gtk_widget_get_root(GTK_WIDGET(view())))));
  evaluate("window.close(); 0");
  pass(0.3);
  EXPECT_EQ(evaluate("document.body.textContent"), "next");
}

TEST_F(PageLimit, TheMenuHasTheClipboardsCommandsOnly) {
  open(
      "<body style='margin:0;font:20px sans-serif'><div style='height:100px'>plain</div>"
      "<div style='height:100px'><a href=/x>link link link</a></div>"
      "<textarea id=text style='height:100px;width:300px'>some text</textarea>");
  EXPECT_EQ(menuAt(300, 50), std::vector<int>()) << "where there is nothing to do, no menu opens";
  EXPECT_EQ(menuAt(40, 112), std::vector<int>{WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD});
  evaluate("text.focus(); text.select(); 0");
  EXPECT_EQ(menuAt(40, 215),
            (std::vector<int>{WEBKIT_CONTEXT_MENU_ACTION_CUT, WEBKIT_CONTEXT_MENU_ACTION_COPY,
                              WEBKIT_CONTEXT_MENU_ACTION_PASTE, WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL}));
}

TEST_F(PageLimit, TheConsoleGoesToTheLogBoundedInSizeAndRate) {
  log::setLevel(log::Level::debug);
  open(R"(<script>
    console.log("count", 3, "access_token=K1");
    console.error("x".repeat(5000) + "你");
    console.warn("a lone surrogate \ud800");
    setTimeout(() => { throw new Error("nobody caught it"); });
  </script>)");
  EXPECT_TRUE(wait([&] { return log.has("console error: Error: nobody caught it"); }, 10));
  EXPECT_TRUE(log.has("console log: count")) << "WebKit tells the first argument";
  EXPECT_TRUE(log.has("console warning: a lone surrogate"));
  EXPECT_TRUE(log.has("x... (5003 bytes)"));
  EXPECT_FALSE(log.has("K1"));
  log.take();
  evaluate("for (let line = 0; line < 5000; ++line) console.log('flood'); 0");
  EXPECT_TRUE(wait([&] { return log.has("more messages in this second are dropped"); }, 10));
  EXPECT_LE(log.count("console log: flood"), 200);
}

class InspectablePage : public PageLimit {
 protected:
  InspectablePage() : PageLimit({.scriptMessageNames = {}, .userScripts = {}, .inspectable = true}) {}
};

TEST_F(InspectablePage, TheMenuLeadsToTheInspector) {
  open("page");
  EXPECT_EQ(menuAt(100, 400), std::vector<int>{WEBKIT_CONTEXT_MENU_ACTION_INSPECT_ELEMENT});
}

TEST_F(PageLimit, DraggedFilesReplaceNothingButReachAPageThatTakesThem) {
  open(
      "<div id=plain>plain</div><input id=input type=file><input id=dead type=file disabled><input id=text><input "
      "id=fixed readonly><div id=zone>zone</div><a id=link href=/x>link</a>"
      "<div id=card draggable=true>card</div>"
      "<script>zone.ondragover = (event) => event.preventDefault();</script>");
  // Whether the event's own action, which would be to open what was dropped, is prevented, and the effect that is left.
  const std::string drag = R"js((type, id, file, link) => {
    const dataTransfer = new DataTransfer();
    if (file) dataTransfer.items.add(new File(['x'], 'x.txt'));
    else dataTransfer.setData(link ? 'text/uri-list' : 'text/plain', 'https://a.example/');
    const event = new DragEvent(type, {bubbles: true, cancelable: true, dataTransfer});
    return String(!document.getElementById(id).dispatchEvent(event));
  })js";
  const struct {
    const char* what;
    const char* call;
    const char* prevented;
  } cases[] = {
      {"a file dropped on the page", "('drop', 'plain', true)", "true"},
      {"a file dropped into a file input", "('drop', 'input', true)", "false"},
      {"a file dropped into a disabled one", "('drop', 'dead', true)", "true"},
      {"a file dropped into a text field", "('drop', 'text', true)", "true"},
      {"a link dropped into a text field", "('drop', 'text', false, true)", "false"},
      {"a link dropped into one that is read only", "('drop', 'fixed', false, true)", "true"},
      {"words dropped on the page", "('drop', 'plain', false)", "false"},
      {"a file over a zone of the page's own", "('dragover', 'zone', true)", "true"},
      {"a link dragged out", "('dragstart', 'link', false)", "true"},
      {"what the page lets drag", "('dragstart', 'card', false)", "false"},
  };
  for (const auto& row : cases) EXPECT_EQ(evaluate("(" + drag + ")" + row.call), row.prevented) << row.what;
}

TEST_F(PageLimit, SoundWaitsForTheVisitor) {
  open(
      "<script>const silence = 'data:audio/wav;base64,UklGRiQAAABXQVZFZm10IBAAAAABAAEAgD4AAAB9AAACABAAZGF0YQAAAAA=';"
      "window.early = 'none';"
      "new Audio(silence).play().then(() => { window.early = 'plays'; }, (error) => { window.early = error.name; });"
      "</script>");
  EXPECT_TRUE(becomes("window.early", "NotAllowedError"));
}

}  // namespace
}  // namespace orivex::gtk
