#include <gtest/gtest.h>

#include "orivex/platform/ui/ImageView.h"
#include "orivex/platform/ui/Label.h"
#include "orivex/voice/RecordingView.h"

namespace orivex::testing {
namespace {

const ImageView* imageOf(const View& view, std::size_t index) {
  return index < view.subviews().size() ? dynamic_cast<ImageView*>(view.subviews()[index].get()) : nullptr;
}

TEST(RecordingViewTest, IsAHiddenRoundedDarkSquareInTheFirstState) {
  const auto view = RecordingView::make();
  EXPECT_EQ(view->frame(), (Rect{0, 0, 120, 120}));
  EXPECT_EQ(view->cornerRadius(), 10);
  EXPECT_TRUE(view->clipsToBounds());
  EXPECT_EQ(view->backgroundColor(), (Color{0, 0, 0, 0.5}));
  EXPECT_TRUE(view->isHidden());
  EXPECT_EQ(view->recordingState(), RecordingState::volumn);
  EXPECT_EQ(view->subviews().size(), 3U);
}

TEST(RecordingViewTest, ShowsOnePictureAndOneCaptionPerState) {
  const struct {
    RecordingState state;
    int value;
    const char* image;
    Rect frame;
    const char* caption;
  } cases[] = {
      {RecordingState::cancel, 1, "dd_cancel_send_record", {37.5, 18, 45, 59}, "松开手指，取消发送"},
      {RecordingState::timeTooShort, 2, "dd_record_too_short", {52, 18, 17.6, 66.4}, "说话时间太短"},
      {RecordingState::volumn, 0, "ico_talk_hint_voice-tube", {14, 18, 67, 67}, "手指上滑,取消发送"},
  };
  const auto view = RecordingView::make();
  for (const auto& row : cases) {
    SCOPED_TRACE(row.image);
    EXPECT_EQ(static_cast<int>(row.state), row.value);
    for (int twice = 0; twice < 2; ++twice) view->setRecordingState(row.state);
    const auto* const image = imageOf(*view, 0);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->imageName(), row.image);
    EXPECT_EQ(image->frame(), row.frame);
    const auto* const caption = dynamic_cast<Label*>(view->subviews().back().get());
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(caption->text(), row.caption);
    EXPECT_EQ(caption->frame(), (Rect{0, 87, 120, 23}));
    EXPECT_EQ(caption->textColor(), Color::white());
    EXPECT_EQ(caption->fontSize(), 12);
    EXPECT_EQ(caption->alignment(), TextAlignment::center);
    EXPECT_TRUE(caption->isAnnounced());
    EXPECT_EQ(view->subviews().size(), row.state == RecordingState::volumn ? 3U : 2U);
  }
}

TEST(RecordingViewTest, RaisesTheLevelFromItsBottomEdge) {
  const auto view = RecordingView::make();
  const auto* const level = imageOf(*view, 1);
  ASSERT_NE(level, nullptr);
  EXPECT_EQ(level->imageName(), "ico_talk_hint_volume");
  EXPECT_EQ(level->contentMode(), ContentMode::bottom);
  EXPECT_TRUE(level->clipsToBounds());
  EXPECT_EQ(level->tag(), 10);
  EXPECT_EQ(level->frame(), (Rect{87, 52, 20, 33}));
  const std::pair<float, double> volumes[] = {{0.5F, 20.625}, {0, 0}, {1, 41.25}, {0.25F, 10.3125}, {0, 0}};
  for (const auto& [volume, height] : volumes) {
    view->setVolume(volume);
    EXPECT_EQ(view->volume(), volume);
    EXPECT_EQ(level->frame(), (Rect{87, 85 - height, 20, height}));
  }
}

TEST(RecordingViewTest, OnlyRemembersTheLevelInOtherStates) {
  const auto view = RecordingView::make();
  for (const auto state : {RecordingState::cancel, RecordingState::timeTooShort}) {
    view->setRecordingState(state);
    std::vector<Rect> before;
    for (const auto& part : view->subviews()) before.push_back(part->frame());
    view->setVolume(0.75F);
    EXPECT_EQ(view->volume(), 0.75F);
    for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(view->subviews()[i]->frame(), before[i]);
  }
  view->setRecordingState(RecordingState::volumn);
  EXPECT_EQ(view->viewWithTag(RecordingView::levelTag)->frame(), (Rect{87, 52, 20, 33}));
}

}  // namespace
}  // namespace orivex::testing
