#include "PageFixture.h"
#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

class ScriptDialog : public PageFixture {
 protected:
  static void answer(const char* label) {
    EXPECT_TRUE(pressInDialog(label)) << label;
    EXPECT_TRUE(wait([] { return !openDialog(); }, 5));
  }

  static std::string message() {
    GtkWidget* content = nullptr;
    g_object_get(openDialog(), "extra-child", &content, nullptr);
    return gtk_label_get_text(GTK_LABEL(findByType(GRef<GtkWidget>::adopt(content).get(), GTK_TYPE_LABEL)));
  }

  static GtkWidget* inDialog(GType type) { return findByType(openDialog(), type); }
};

TEST_F(ScriptDialog, AsksUnderThePagesOriginAndBringsTheAnswerBack) {
  open("page");
  const struct {
    const char* what;
    const char* script;
    const char* message;
    const char* typed;
    const char* response;
    const char* result;
  } cases[] = {
      {"alert", "alert('<b>1 & 2</b>')", "<b>1 & 2</b>", nullptr, "确定", "undefined"},
      {"confirmed", "confirm('好吗？')", "好吗？", nullptr, "确定", "true"},
      {"not confirmed", "confirm('好吗？')", "好吗？", nullptr, "取消", "false"},
      {"prompt taken as it is", "prompt('名字', '李')", "名字", nullptr, "确定", "李"},
      {"prompt answered", "prompt('名字', '李')", "名字", "林\"\\", "确定", "林\"\\"},
      {"prompt emptied", "prompt('名字', '李')", "名字", "", "确定", ""},
      {"prompt declined", "prompt('名字', '李')", "名字", "林", "取消", "null"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    run(std::string("window.result = 'none'; window.result = String(") + row.script + ")");
    ASSERT_TRUE(waitForDialog());
    EXPECT_EQ(headingOf(openDialog()), url("").substr(std::string("http://").size()) + " 的消息");
    EXPECT_EQ(message(), row.message);
    EXPECT_TRUE(gtk_window_get_modal(GTK_WINDOW(gtk_widget_get_root(openDialog()))));
    if (row.typed) gtk_editable_set_text(GTK_EDITABLE(inDialog(GTK_TYPE_ENTRY)), row.typed);
    answer(row.response);
    EXPECT_TRUE(becomes("window.result", row.result));
  }
}

TEST_F(ScriptDialog, LeavingAPageWithUnsavedTextIsAskedInOurWords) {
  open("<input autofocus><script>addEventListener('beforeunload', (event) => event.preventDefault())</script>",
       {{"/next", {reply(200, "next", htmlHeader)}}});
  hands("click", 40, 20);
  hands({"type", "x"});
  run("location.href = '/next'");
  ASSERT_TRUE(waitForDialog());
  EXPECT_EQ(headingOf(openDialog()), "要离开此页面吗？");
  answer("留下");
  EXPECT_EQ(evaluate("location.pathname"), "/");
  run("location.href = '/next'");
  ASSERT_TRUE(waitForDialog());
  answer("离开");
  EXPECT_TRUE(becomes("location.pathname", "/next"));
}

TEST_F(ScriptDialog, ALongTextIsCutBetweenCharacters) {
  open("page");
  run("alert('字'.repeat(100000))");
  ASSERT_TRUE(waitForDialog());
  EXPECT_EQ(g_utf8_strlen(message().c_str(), -1), 2001);
  EXPECT_TRUE(message().ends_with("字…"));
  EXPECT_LE(gtk_widget_get_height(openDialog()), 600) << "its buttons must be on the screen";
  answer("确定");
}

TEST_F(ScriptDialog, EndsWithItsPageAndWithItsProcess) {
  open("page");
  run("confirm('still there?')");
  ASSERT_TRUE(waitForDialog());
  webkit_web_view_terminate_web_process(view());
  EXPECT_TRUE(wait([] { return !openDialog(); }, 5)) << "nobody waits for this answer";

  open("again");
  run("prompt('and now?')");
  ASSERT_TRUE(waitForDialog());
  closePage();
  EXPECT_FALSE(openDialog());
  pass(0.2);
}

TEST_F(ScriptDialog, EndsWithItsWindow) {
  open("page");
  run("confirm('?')");
  ASSERT_TRUE(waitForDialog());
  destroyWindow();
  EXPECT_FALSE(openDialog());
  closePage();
  pass(0.2);
}

TEST_F(ScriptDialog, APageThatFloodsTheVisitorCanBeSilenced) {
  open("page");
  run("window.shown = 0; for (let i = 0; i < 40; ++i) { alert(i); ++window.shown; }"
      "window.result = String([confirm('?'), prompt('?')]);");
  for (int count = 1; count <= 2; ++count) {
    ASSERT_TRUE(waitForDialog());
    EXPECT_FALSE(inDialog(GTK_TYPE_CHECK_BUTTON)) << count;
    EXPECT_TRUE(pressInDialog("确定"));
    ASSERT_TRUE(wait([&] { return !openDialog() || std::to_string(count) == message(); }, 5));
  }
  ASSERT_TRUE(waitForDialog());
  ASSERT_TRUE(inDialog(GTK_TYPE_CHECK_BUTTON));
  gtk_check_button_set_active(GTK_CHECK_BUTTON(inDialog(GTK_TYPE_CHECK_BUTTON)), TRUE);
  answer("确定");
  EXPECT_TRUE(becomes("window.shown", "40"));
  EXPECT_EQ(evaluate("window.result"), "false,");
  EXPECT_FALSE(openDialog());

  open("the next page of the same screen");
  evaluate("alert('me again'); 0");
  EXPECT_FALSE(openDialog()) << "a page does not get its voice back by loading itself anew";
}

}  // namespace
}  // namespace orivex::gtk
