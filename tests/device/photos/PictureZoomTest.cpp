#include <gtest/gtest.h>

#include "photos/preview/PictureZoom.h"

namespace orivex::gtk {
namespace {

TEST(PictureZoom, KeepsWhatIsUnderTheFingersAndLeavesNoGap) {
  PictureZoom zoom;
  zoom.fit({360, 240}, {360, 600});
  zoom.scaleTo(2, {90, 100});
  EXPECT_EQ(zoom.offset(), (Translation{-90, 0})) << "still less high than the area";
  zoom.scaleTo(100, {0, 0});
  EXPECT_EQ(zoom.scale(), PictureZoom::largest);
  EXPECT_EQ(zoom.offset(), (Translation{-180, 0}));
  zoom.moveTo({-5000, 5000});
  EXPECT_EQ(zoom.offset(), (Translation{-540, 180}));
  zoom.scaleTo(0.1, {90, 100});
  EXPECT_FALSE(zoom.isIn());
  EXPECT_EQ(zoom.offset(), Translation{});
}

}  // namespace
}  // namespace orivex::gtk
