#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "support/MainLoop.h"
#include "support/Visitor.h"

#include "orivex/platform/ui/Window.h"
#include "orivex/voice/RecordingView.h"

namespace orivex::gtk {
namespace {

/// Where the caption of the recording overlay stands in its window, and how large it is.
graphene_rect_t captionIn(const VisitorWindow& visitor) {
  graphene_rect_t bounds = {};
  GtkWidget* const caption = findByText(GTK_WIDGET(visitor.overlay()), "手指上滑,取消发送");
  EXPECT_TRUE(caption && gtk_widget_compute_bounds(caption, GTK_WIDGET(visitor.overlay()), &bounds));
  return bounds;
}

TEST(RecordingOverlayTest, GrowsWithTheVisitorsTextAsFarAsTheWindowHasRoom) {
  const VisitorWindow visitor;
  auto* const settings = gtk_settings_get_default();
  const auto overlay = RecordingView::make();
  const auto screen = std::make_shared<View>();  // fills its window
  visitor.view()->window()->contentView()->addSubview(screen);
  screen->addSubview(overlay);
  overlay->setHidden(false);
  const struct {
    int width;
    int height;
    double textSize;
    double expected;
  } rows[] = {{360, 720, 1, 1}, {360, 720, 2, 2}, {360, 720, 0.5, 1}, {640, 360, 2.5, 2.5}, {640, 360, 4, 2.7}};
  for (const auto& row : rows) {
    gtk_window_set_default_size(visitor.window(), row.width, row.height);
    auto* const parent = GTK_WIDGET(visitor.overlay());
    ASSERT_TRUE(wait([&] { return gtk_widget_get_height(parent) == row.height; }, 5)) << row.height;
    overlay->setCenter({row.width / 2.0, row.height / 2.0});
    g_object_set(settings, "gtk-xft-dpi", static_cast<int>(row.textSize * 96 * 1024), nullptr);
    pass(0.2);
    const auto caption = captionIn(visitor);
    const auto side = static_cast<float>(RecordingView::side * row.expected);
    EXPECT_NEAR(caption.size.width, side, 1) << row.textSize;
    EXPECT_NEAR(caption.origin.x, (static_cast<float>(row.width) - side) / 2, 1) << row.textSize;
    EXPECT_LE(caption.origin.y + caption.size.height, static_cast<float>(row.height)) << row.textSize;
  }
  gtk_settings_reset_property(settings, "gtk-xft-dpi");
}

TEST(RecordingOverlayTest, ShowsTheTimeAboveItsPictures) {
  const VisitorWindow visitor;
  const auto overlay = RecordingView::make();
  visitor.view()->window()->contentView()->addSubview(overlay);
  overlay->setSeconds(83);
  overlay->setHidden(false);
  pass(0.2);
  GtkWidget* const time = findByText(GTK_WIDGET(visitor.overlay()), "1:23");
  ASSERT_TRUE(time);
  int top = 0;
  gtk_label_get_layout_offsets(GTK_LABEL(time), nullptr, &top);
  int height = 0;
  pango_layout_get_pixel_size(gtk_label_get_layout(GTK_LABEL(time)), nullptr, &height);
  double y = 0;
  gtk_widget_translate_coordinates(time, gtk_widget_get_parent(time), 0, top + height, nullptr, &y);
  EXPECT_LE(y, 18) << "it covers the picture";
}

}  // namespace
}  // namespace orivex::gtk
