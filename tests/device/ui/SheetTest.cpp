#include <cmath>
#include <memory>
#include <string>
#include <tuple>

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
  /// In the window; empty while it is not on the screen.
  graphene_rect_t bounds() const {
    graphene_rect_t place{};
    if (panel() && gtk_widget_get_mapped(panel())) {
      std::ignore = gtk_widget_compute_bounds(panel(), GTK_WIDGET(visitor_.overlay()), &place);
    }
    return place;
  }
  bool isOpen() const {
    const auto place = bounds();
    const bool isDialog = panel() && gtk_widget_has_css_class(panel(), "dialog");
    const float bottom = place.origin.y + place.size.height;
    const auto below = static_cast<float>(gtk_widget_get_height(GTK_WIDGET(visitor_.overlay()))) - bottom;
    return place.size.height > 0 && (isDialog ? gtk_widget_get_opacity(panel()) == 1 : std::abs(below) < 0.5F);
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

TEST_F(SheetTest, ClosesWhileItOpens) {
  for (const double after : {0.0, 0.1}) {
    closings_ = 0;
    openButtons();
    pass(after);
    sheet_->close();
    EXPECT_TRUE(waitUntilClosed()) << after;
  }
}

TEST_F(SheetTest, ContentWithoutAFocusStillTakesEscape) {
  gtk_widget_grab_focus(visitor_.entry());
  open(gtk_label_new("Nothing to press"));
  ASSERT_TRUE(waitUntilOpen());
  VisitorWindow::press({"x", "Escape"});
  EXPECT_TRUE(waitUntilClosed());
  EXPECT_STREQ(gtk_editable_get_text(GTK_EDITABLE(visitor_.entry())), "");
}

TEST_F(SheetTest, IsASheetInASmallWindowAndADialogInALargerOneAlsoWhenThatIsResized) {
  GtkWidget* const scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
  GtkWidget* const tall = gtk_label_new("Tall");
  gtk_widget_set_size_request(tall, -1, 5000);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), tall);
  open(scroller);
  ASSERT_TRUE(waitUntilOpen());
  for (const auto& [width, height, place] : std::initializer_list<std::tuple<int, int, graphene_rect_t>>{
           {900, 600, {{170, 24}, {560, 552}}},
           {520, 600, {{24, 24}, {472, 552}}},
           {640, 360, {{40, 48}, {560, 312}}},  // a phone on its side
           {360, 720, {{0, 48}, {360, 672}}}}) {
    gtk_window_set_default_size(visitor_.window(), width, height);
    const auto isThere = [&, &place = place] {
      const auto now = bounds();
      return isOpen() && graphene_rect_equal(&now, &place);
    };
    EXPECT_TRUE(wait(isThere, 20)) << width << ": " << bounds().origin.x << " " << bounds().origin.y << " "
                                   << bounds().size.width << " " << bounds().size.height;
  }
  hands("swipe", 180, 56, 180, 120);
  EXPECT_TRUE(waitUntilOpen()) << "a little way down is not meant";
  EXPECT_EQ(closings_, 0);
  hands("swipe", 180, 56, 180, 500);
  EXPECT_TRUE(waitUntilClosed()) << "the grabber leads nowhere";
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
