#include "Desktop.h"
#include "support/LogLines.h"
#include "support/Visitor.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Documents.h"

namespace orivex::gtk {
namespace {

class OpenWithMenuTest : public ::testing::Test {
 protected:
  bool present(const Url& file) {
    return Platform::current().documentInteraction.presentOptionsMenu(file, {}, *visitor_.view());
  }
  GtkWidget* sheet() const { return findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-sheet"); }
  bool waitUntilGone() const {
    return wait([&] { return !sheet(); }, 5);
  }
  /// Names of the listed applications, once the sheet stands.
  std::vector<std::string> names() const {
    pass(0.4);
    std::vector<std::string> names;
    GtkWidget* const list = findByClass(sheet(), "orivex-applications");
    for (GtkWidget* row = list ? gtk_widget_get_first_child(list) : nullptr; row;
         row = gtk_widget_get_next_sibling(row)) {
      GtkWidget* const box = gtk_list_box_row_get_child(GTK_LIST_BOX_ROW(row));
      names.emplace_back(gtk_label_get_text(GTK_LABEL(gtk_widget_get_last_child(box))));
    }
    return names;
  }
  void choose(const char* name) {
    pass(0.4);
    visitor_.click(findByText(sheet(), name));
  }

  static Url web(const std::string& path) { return *Url::parse("https://example.org/" + path); }

  VisitorWindow visitor_;
};

TEST_F(OpenWithMenuTest, ListsTheApplicationsThatTakeTheFileTheUsualOneFirst) {
  struct Row {
    Url file;
    std::vector<std::string> names;
  };
  for (const auto& [file, expected] :
       {Row{web("x/a.pdf?name=b.note#c"), {"Usual", "Browser"}}, Row{web("a.note"), {"Texts", "Browser"}},
        Row{web("game.jar"), {"Browser"}}, Row{web("x.pdf/"), {"Browser"}},
        Row{*Url::parse("https://example.pdf"), {"Browser"}}}) {
    SCOPED_TRACE(file.absoluteString());
    EXPECT_TRUE(present(file));
    EXPECT_EQ(names(), expected);
  }
}

TEST_F(OpenWithMenuTest, CanBeReadOnADarkDesktop) {
  adw_style_manager_set_color_scheme(adw_style_manager_get_default(), ADW_COLOR_SCHEME_FORCE_DARK);
  ASSERT_TRUE(present(web("a.pdf")));
  ASSERT_FALSE(names().empty());
  const auto color = [&](const char* text) {
    GdkRGBA found{};
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    gtk_style_context_get_color(gtk_widget_get_style_context(findByText(sheet(), text)), &found);
    G_GNUC_END_IGNORE_DEPRECATIONS
    return GCharPtr(gdk_rgba_to_string(&found));
  };
  EXPECT_STREQ(color("Usual").get(), color("用其他应用打开").get());
}

TEST_F(OpenWithMenuTest, WithoutAnApplicationNothingIsShown) {
  for (const auto& file :
       {*Url::parse("http://example.org/a"), *Url::parse("tel:123"), *Url::parse("a.pdf"), desktop.file("a.pdf"),
        *Url::parse("FILE:///tmp/a.pdf"), *Url::parse("ftp://a.example/a.pdf"), *Url::parse("smb://a.example/a.pdf"),
        *Url::parse("mailto:a.pdf"), *Url::parse("javascript:a.pdf"), *Url::parse("data:a.pdf"),
        *Url::parse("blob:https://a.example/a.pdf")}) {
    EXPECT_FALSE(present(file)) << file.absoluteString();
    EXPECT_EQ(sheet(), nullptr);
  }
  visitor_.destroy();
  EXPECT_FALSE(present(web("a.pdf"))) << "without a window";
}

TEST_F(OpenWithMenuTest, AChoiceOpensTheFileInThatApplication) {
  const auto file = web("a%20100%25.pdf?c=d");
  for (const auto& [name, started] : {std::pair{"Usual", "usual "}, std::pair{"Browser", "browser "}}) {
    ASSERT_TRUE(present(file));
    choose(name);
    EXPECT_EQ(desktop.waitForOpened(), started + file.absoluteString() + " ");
    EXPECT_TRUE(waitUntilGone());
  }
}

TEST_F(OpenWithMenuTest, CancelOpensNothingAndAnApplicationThatDoesNotStartIsOneLogLine) {
  const LogLines lines;
  ASSERT_TRUE(present(web("a.odd")));
  choose("取消");
  EXPECT_TRUE(waitUntilGone());
  EXPECT_TRUE(lines.get().empty());
  ASSERT_TRUE(present(web("a.odd")));
  choose("Broken");
  EXPECT_TRUE(wait([&] { return !lines.get().empty(); }, 10));
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(lines.get().size(), 1U);
}

}  // namespace
}  // namespace orivex::gtk
