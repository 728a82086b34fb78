#include <gtest/gtest.h>

#include "orivex/platform/ui/ContentViews.h"
#include "orivex/voice/RecordingView.h"

namespace orivex::testing {
namespace {

const ImageView* imageOf(const View& view, std::size_t index) {
  return index < view.subviews().size() ? dynamic_cast<ImageView*>(view.subviews()[index].get()) : nullptr;
}

TEST(RecordingViewTest, ShowsOnePictureAndOneCaptionPerState) {
  const struct {
    RecordingState state;
    const char* image;
    Rect frame;
    const char* caption;
  } cases[] = {
      {RecordingState::cancel, "dd_cancel_send_record", {37.5, 18, 45, 59}, "松开手指，取消发送"},
      {RecordingState::timeTooShort, "dd_record_too_short", {52, 18, 17.6, 66.4}, "说话时间太短"},
      {RecordingState::volumn, "ico_talk_hint_voice-tube", {14, 18, 67, 67}, "手指上滑,取消发送"},
  };
  const auto view = RecordingView::make();
  for (const auto& row : cases) {
    SCOPED_TRACE(row.image);
    for (int twice = 0; twice < 2; ++twice) view->setRecordingState(row.state);
    const auto* const image = imageOf(*view, 0);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->imageName(), row.image);
    EXPECT_EQ(image->frame(), row.frame);
    const auto* const caption = dynamic_cast<Label*>(view->subviews().back().get());
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(caption->text(), row.caption);
    EXPECT_TRUE(caption->isAnnounced());
    EXPECT_EQ(view->subviews().size(), row.state == RecordingState::volumn ? 3U : 2U);
  }
}

TEST(RecordingViewTest, RaisesTheLevelFromItsBottomEdge) {
  const auto view = RecordingView::make();
  const auto* const level = imageOf(*view, 1);
  ASSERT_NE(level, nullptr);
  EXPECT_EQ(level->frame(), (Rect{87, 52, 20, 33}));
  const std::pair<float, double> volumes[] = {{0.5F, 20.625}, {0, 0}, {1, 41.25}, {0.25F, 10.3125}, {0, 0}};
  for (const auto& [volume, height] : volumes) {
    view->setVolume(volume);
    EXPECT_EQ(view->volume(), volume);
    EXPECT_EQ(level->frame(), (Rect{87, 85 - height, 20, height}));
  }
}

}  // namespace
}  // namespace orivex::testing
