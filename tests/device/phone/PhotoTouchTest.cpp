#include <gtest/gtest.h>

#include "device/photos/PhotoStage.h"
#include "support/Visitor.h"

namespace orivex::gtk {
namespace {

class PhotoTouch : public ::testing::Test, protected PhotoStage {};

TEST_F(PhotoTouch, FingersScrollSelectZoomAndGoOn) {
  fill(60);
  open();
  ASSERT_TRUE(cell("p01.jpg"));
  auto* const grid = gtk_widget_get_ancestor(cell("p01.jpg")->widget(), GTK_TYPE_SCROLLED_WINDOW);
  auto* const scrolled = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(grid));
  hands("swipe", 180, 600, 180, 300);
  EXPECT_TRUE(wait([&] { return gtk_adjustment_get_value(scrolled) >= 200; }, 5));
  pass(1.5);  // until it no longer rolls
  EXPECT_FALSE(reads("完成(1)")) << "a finger that scrolls has selected";

  // The middle one of the third row that can be seen, past the video.
  const int number = 3 * (static_cast<int>(gtk_adjustment_get_value(scrolled)) / 120 + 2) + 1;
  const std::string name = "p" + std::to_string(number) + ".jpg";
  const auto position = [](int index) { return std::to_string(index + 1) + " / 61"; };
  clickCircle(name);
  EXPECT_TRUE(reads("完成(1)"));
  visitor_.click(cell(name)->widget());
  EXPECT_TRUE(reads(position(number)));
  waitForSlide();
  hands("swipe", 300, 360, 60, 360);
  EXPECT_TRUE(reads(position(number + 1)));
  waitForSlide();

  hands("pinch", 180, 360, 80, 240);
  hands("swipe", 200, 360, 120, 360);
  pass(0.5);
  EXPECT_TRUE(reads(position(number + 1))) << "a picture that was drawn near is moved, not left";
  hands("pinch", 180, 360, 240, 40);
  waitForSlide();
  hands("swipe", 60, 360, 300, 360);
  EXPECT_TRUE(reads(position(number)));
}

}  // namespace
}  // namespace orivex::gtk
