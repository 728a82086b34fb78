#include <gtest/gtest.h>

#include "orivex/platform/ui/ContentViews.h"
#include "orivex/voice/RecordingView.h"

namespace orivex::testing {
namespace {

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
    const auto* const image = dynamic_cast<ImageView*>(view->subviews().front().get());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->imageName(), row.image);
    EXPECT_EQ(image->frame(), row.frame);
    const auto* const caption = dynamic_cast<Label*>(view->subviews().back().get());
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(caption->text(), row.caption);
    EXPECT_EQ(caption->frame(), (Rect{0, RecordingView::side - 33, RecordingView::side, 23}));
    EXPECT_TRUE(caption->isAnnounced());
    EXPECT_EQ(view->subviews().size(), row.state == RecordingState::volumn ? 3U : 2U);
  }
}

}  // namespace
}  // namespace orivex::testing
