#include <algorithm>
#include <string>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "support/MainLoop.h"
#include "support/Visitor.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {
namespace {

// Longer than a fade.
constexpr double settling = 0.3;

class GtkProgressOverlayTest : public ::testing::Test {
 protected:
  GtkProgressOverlayTest() {
    overlay_.setStyle(OverlayStyle::dark);
    overlay_.setMask(OverlayMask::black);
    overlay_.setMinimumSize({120, 120});
    overlay_.setMaximumDismissTime(60);
    gtk_widget_grab_focus(visitor_.entry());
  }
  ~GtkProgressOverlayTest() override {
    overlay_.dismiss();
    g_object_set(settings(), "gtk-enable-animations", TRUE, nullptr);
    gtk_settings_reset_property(settings(), "gtk-xft-dpi");
  }

  static GtkSettings* settings() { return gtk_settings_get_default(); }
  GtkWidget* mask() const { return findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-mask"); }
  double opacity() const { return mask() ? gtk_widget_get_opacity(mask()) : 0; }
  std::string entered() const { return gtk_editable_get_text(GTK_EDITABLE(visitor_.entry())); }

  VisitorWindow visitor_;
  ProgressOverlay& overlay_ = Platform::current().progressOverlay;
};

TEST_F(GtkProgressOverlayTest, TheMaskTakesKeysAndClicksUntilThePanelStartsToLeave) {
  overlay_.show();
  VisitorWindow::press({"a", "Tab"});
  ASSERT_TRUE(mask());
  EXPECT_EQ(gtk_widget_pick(GTK_WIDGET(visitor_.window()), 20, 20, GTK_PICK_DEFAULT), mask());
  overlay_.dismiss();
  ASSERT_TRUE(mask()) << "it went without fading";
  EXPECT_NE(gtk_widget_pick(GTK_WIDGET(visitor_.window()), 20, 20, GTK_PICK_DEFAULT), mask());
  VisitorWindow::press({"b"});
  EXPECT_EQ(entered(), "b") << "the focus is where it was, and only later keys arrive";
  EXPECT_TRUE(wait([&] { return !mask(); }, 5));
  overlay_.setMask(OverlayMask::none);
  overlay_.show();
  VisitorWindow::press({"c"});
  EXPECT_EQ(entered(), "bc") << "without a mask nothing is taken";
}

TEST_F(GtkProgressOverlayTest, EscapeAndTheCrossCancelAndLeaveTheFocusWhereItIs) {
  std::vector<std::string> given;
  overlay_.setOnCancel([&] { given.emplace_back("up"); });
  overlay_.showProgress(0.25F, "25%");
  pass(settling);
  VisitorWindow::press({"a", "Escape"});
  EXPECT_TRUE(wait([&] { return given.size() == 1; }, 5));
  GtkWidget* const cross = findByType(mask(), GTK_TYPE_BUTTON);
  visitor_.click(cross);
  EXPECT_TRUE(wait([&] { return given.size() == 2; }, 5));
  overlay_.showInfo("未知错误");
  EXPECT_FALSE(gtk_widget_get_visible(cross));
  VisitorWindow::press({"Escape"});
  pass(settling);
  EXPECT_EQ(given.size(), 2U);
  overlay_.dismiss();
  VisitorWindow::press({"b"});
  EXPECT_TRUE(wait([&] { return entered() == "b"; }, 5)) << entered();
  overlay_.setOnCancel(nullptr);
}

TEST_F(GtkProgressOverlayTest, TheBarOfAnOfferLiesAboveThePanelAndTakesNoInputBesideIt) {
  int tries = 0;
  const auto retry = [&] {
    ++tries;
    overlay_.offer(std::nullopt);
  };
  overlay_.offer(OverlayOffer{{}, "1 项未发送", retry, nullptr});
  overlay_.showInfo("未知错误");
  pass(settling);
  auto* const root = GTK_WIDGET(visitor_.window());
  GtkWidget* const bar = findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-offer");
  ASSERT_TRUE(bar);
  overlay_.dismiss();
  EXPECT_TRUE(wait([&] { return !mask(); }, 5));
  GtkWidget* const beside = gtk_widget_pick(root, 20, 600, GTK_PICK_DEFAULT);
  EXPECT_TRUE(beside && gtk_widget_is_ancestor(visitor_.entry(), root) && !gtk_widget_is_ancestor(beside, bar));
  overlay_.showInfo("未知错误");
  pass(settling);
  visitor_.click(findByType(bar, GTK_TYPE_BUTTON));
  EXPECT_TRUE(wait([&] { return tries == 1; }, 5)) << "the mask lies above the bar";
  EXPECT_FALSE(findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-offer"));
}

TEST_F(GtkProgressOverlayTest, LargeTextAndRightToLeftLayoutsCutNothingOff) {
  g_object_set(settings(), "gtk-xft-dpi", 192 * 1024, nullptr);
  gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
  const std::string text = "2 项未发送:无法连接到服务器";
  overlay_.offer(OverlayOffer{{}, text, nullptr, nullptr});
  overlay_.setOnCancel([] {});
  overlay_.showProgress(0.25F, "25%");
  pass(settling);
  auto* const status = findByText(GTK_WIDGET(visitor_.overlay()), text);
  ASSERT_TRUE(status);
  EXPECT_FALSE(pango_layout_is_ellipsized(gtk_label_get_layout(GTK_LABEL(status))));
  EXPECT_EQ(gtk_widget_get_width(GTK_WIDGET(visitor_.window())), 360);
  graphene_rect_t cross;
  GtkWidget* const panel = findByClass(mask(), "orivex-panel");
  ASSERT_TRUE(gtk_widget_compute_bounds(findByType(panel, GTK_TYPE_BUTTON), panel, &cross));
  EXPECT_LE(cross.origin.x, 4) << "it stands over the ring";
  gtk_widget_set_default_direction(GTK_TEXT_DIR_LTR);
  overlay_.offer(std::nullopt);
  overlay_.setOnCancel(nullptr);
}

TEST_F(GtkProgressOverlayTest, OnePanelChangesWhatItShowsAndComesBackWhileItLeaves) {
  overlay_.show();
  GtkWidget* const first = mask();
  EXPECT_LT(opacity(), 1) << "it came without fading";
  pass(settling);
  const auto stands = [&] { return mask() == first && opacity() == 1; };
  EXPECT_TRUE(stands());
  overlay_.showProgress(0.5F, "50%");
  EXPECT_TRUE(stands());
  overlay_.showInfo("文件过大");
  EXPECT_TRUE(stands());
  overlay_.dismiss();
  EXPECT_TRUE(wait([&] { return opacity() < 0.9; }, 5));
  overlay_.show();
  EXPECT_EQ(mask(), first);
  EXPECT_GT(opacity(), 0) << "it began again from nothing";
  pass(settling);
  EXPECT_TRUE(stands());
  VisitorWindow::press({"a"});
  EXPECT_EQ(entered(), "");
}

TEST_F(GtkProgressOverlayTest, ReducedMotionMakesItComeAndGoAtOnce) {
  g_object_set(settings(), "gtk-enable-animations", FALSE, nullptr);
  overlay_.showInfo("文件过大");
  EXPECT_EQ(opacity(), 1);
  overlay_.dismiss();
  EXPECT_EQ(mask(), nullptr);
}

TEST_F(GtkProgressOverlayTest, ThePanelStaysInsideItsWindowWhateverTheTextAndItsSize) {
  const graphene_rect_t room{{16, 16}, {360 - 2 * 16, 720 - 2 * 16}};
  std::string endless;
  for (int i = 0; i < 200; ++i) endless += "选择的视频文件大小不能超过 30 MB ";
  for (const auto& text :
       {std::string("短"), std::string("选择的视频文件大小不能超过 30 MB"), endless, std::string(400, 'x')}) {
    for (const int dpi : {96, 192}) {
      g_object_set(settings(), "gtk-xft-dpi", dpi * 1024, nullptr);
      overlay_.showInfo(text);
      pass(0.1);
      GtkWidget* const panel = findByClass(mask(), "orivex-panel");
      graphene_rect_t bounds;
      ASSERT_TRUE(gtk_widget_compute_bounds(panel, GTK_WIDGET(visitor_.overlay()), &bounds));
      EXPECT_GE(std::min(bounds.size.width, bounds.size.height), 120) << text.substr(0, 40) << dpi;
      EXPECT_TRUE(graphene_rect_contains_rect(&room, &bounds)) << text.substr(0, 40) << dpi;
    }
  }
  overlay_.setDetail(endless);
  overlay_.showProgress(0.5F, "50%");
  pass(0.1);
  graphene_rect_t bounds;
  ASSERT_TRUE(gtk_widget_compute_bounds(findByText(mask(), endless), GTK_WIDGET(visitor_.overlay()), &bounds));
  EXPECT_TRUE(graphene_rect_contains_rect(&room, &bounds)) << "the line below";
  overlay_.showInfo("短");
  EXPECT_FALSE(findByText(mask(), endless)) << "a message with the name of a file";
  overlay_.setDetail("");
  EXPECT_EQ(gtk_widget_get_width(GTK_WIDGET(visitor_.window())), 360) << "the panel widened the window";
}

}  // namespace
}  // namespace orivex::gtk
