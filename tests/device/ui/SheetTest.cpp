#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "support/MainLoop.h"
#include "support/Visitor.h"
#include "ui/Sheet.h"

#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

class SheetTest : public ::testing::Test {
 protected:
  void open(GtkWidget* content) {
    sheet_ = std::make_unique<Sheet>(visitor_.overlay(), Platform::current().mainQueue, content, "Sheet", [this] {
      ++closings_;
      sheet_.reset();
    });
  }
  void openButtons() {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    for (auto*& button : buttons_) {
      button = gtk_button_new_with_label("Button");
      gtk_box_append(GTK_BOX(box), button);
    }
    open(box);
  }
  GtkWidget* panel() const { return findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-sheet"); }
  bool isOpen() const {
    return panel() &&
           gtk_revealer_get_child_revealed(GTK_REVEALER(gtk_widget_get_ancestor(panel(), GTK_TYPE_REVEALER)));
  }
  bool waitUntilOpen() const {
    return wait([&] { return isOpen(); }, 5);
  }
  bool waitUntilClosed() const {
    return wait([&] { return closings_ > 0; }, 5);
  }
  /// Where the focus is: 'a', 'b', 'c' for the sheet's buttons, 'e' for the page's entry, '-' for anywhere else.
  char focus() const {
    GtkWidget* const focused = visitor_.focus();
    if (focused && gtk_widget_is_ancestor(focused, visitor_.entry())) return 'e';
    for (std::size_t i = 0; i < std::size(buttons_); ++i) {
      if (focused && focused == buttons_[i]) return static_cast<char>('a' + i);
    }
    return '-';
  }

  VisitorWindow visitor_;
  GtkWidget* buttons_[3] = {};
  std::unique_ptr<Sheet> sheet_;
  int closings_ = 0;
};

TEST_F(SheetTest, GoesByEscapeByATapOnTheMaskAndByItsOwnerOnce) {
  struct Way {
    const char* name;
    std::function<void()> close;
  };
  for (const auto& [name, close] :
       {Way{"Escape", [] { VisitorWindow::press({"Escape"}); }}, Way{"mask", [] { VisitorWindow::click(180, 100); }},
        Way{"owner", [this] { sheet_->close(); }}, Way{"owner twice", [this] {
                                                         sheet_->close();
                                                         sheet_->close();
                                                       }}}) {
    SCOPED_TRACE(name);
    closings_ = 0;
    gtk_widget_grab_focus(visitor_.entry());
    openButtons();
    ASSERT_TRUE(waitUntilOpen());
    EXPECT_EQ(focus(), 'a');
    VisitorWindow::click(180, 715);
    EXPECT_EQ(closings_, 0) << "a tap on the panel closed it";
    close();
    EXPECT_EQ(focus(), 'e') << "the focus came back only after the panel had gone";
    ASSERT_TRUE(waitUntilClosed());
    pass(0.05);
    EXPECT_EQ(closings_, 1);
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(focus(), 'e');
  }
}

TEST_F(SheetTest, KeysMoveTheFocusRoundInsideAndNeverOut) {
  gtk_widget_grab_focus(visitor_.entry());
  openButtons();
  ASSERT_TRUE(waitUntilOpen());
  std::string path(1, focus());
  for (const char* key : {"Tab", "Tab", "Tab", "shift+Tab", "Up", "Up", "Up", "Down", "Left"}) {
    VisitorWindow::press({key});
    path += focus();
  }
  EXPECT_EQ(path, "abcacbaabb");
  gtk_widget_grab_focus(visitor_.entry());
  pass(0.05);
  EXPECT_EQ(focus(), 'a') << "the page under the sheet took the focus";
}

TEST_F(SheetTest, ContentWithoutAFocusStillTakesEscape) {
  gtk_widget_grab_focus(visitor_.entry());
  open(gtk_label_new("Nothing to press"));
  ASSERT_TRUE(waitUntilOpen());
  VisitorWindow::press({"x", "Escape"});
  EXPECT_TRUE(waitUntilClosed());
  EXPECT_STREQ(gtk_editable_get_text(GTK_EDITABLE(visitor_.entry())), "");
}

TEST_F(SheetTest, ItsWidthHasALimitAndItsHeightLeavesTheMaskInReach) {
  gtk_window_set_default_size(visitor_.window(), 900, 600);
  GtkWidget* const scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
  GtkWidget* const tall = gtk_label_new("Tall");
  gtk_widget_set_size_request(tall, -1, 5000);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), tall);
  open(scroller);
  ASSERT_TRUE(waitUntilOpen());
  EXPECT_TRUE(wait([&] { return gtk_widget_get_width(panel()) == 560; }, 5)) << gtk_widget_get_width(panel());
  EXPECT_EQ(gtk_widget_get_height(panel()), gtk_widget_get_height(GTK_WIDGET(visitor_.overlay())) - 48);
  VisitorWindow::click(40, 300);
  EXPECT_TRUE(waitUntilClosed()) << "beside the panel is the mask";
}

TEST_F(SheetTest, TheWindowsEndTellsTheOwner) {
  openButtons();
  visitor_.destroy();
  EXPECT_EQ(closings_, 0);
  EXPECT_TRUE(waitUntilClosed());
  EXPECT_FALSE(sheet_);
}

}  // namespace
}  // namespace orivex::gtk
