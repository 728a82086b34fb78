#include "orivex/voice/RecordingView.h"

#include <string>
#include <utility>

#include "orivex/platform/base/Translation.h"

namespace orivex {
namespace {

// Height of the level bar at full volume, in points.
constexpr float fullLevel = 41.25F;

constexpr double textSize = 12;  // points

}  // namespace

std::shared_ptr<RecordingView> RecordingView::make() {
  auto view = std::make_shared<RecordingView>();
  view->setCornerRadius(10);
  view->setClipsToBounds(true);
  view->setBackgroundColor(Color{0, 0, 0, 0.5});
  view->setGrowsWithText(true);
  view->setFontSize(textSize);
  view->setTextColor(Color::white());
  view->setAlignment(TextAlignment::center);
  view->setAtTop(true);
  view->setShadow(true);
  view->setHidden(true);
  view->setRecordingState(RecordingState::volumn);
  return view;
}

void RecordingView::setRecordingState(RecordingState state) {
  state_ = state;
  showTime();
  removeAllSubviews();
  switch (state) {
    case RecordingState::volumn: {
      const Rect microphone{14, 18, 67, 67};
      addImage("ico_talk_hint_voice-tube", microphone);
      addLevel(microphone);
      addCaption(tr("手指上滑,取消发送"));
      break;
    }
    case RecordingState::cancel:
      addImage("dd_cancel_send_record", {(side - 45) / 2, 18, 45, 59});
      addCaption(tr("松开手指，取消发送"));
      break;
    case RecordingState::timeTooShort:
      addImage("dd_record_too_short", {(side - 16) / 2, 18, 17.6, 66.4});
      addCaption(tr("说话时间太短"));
      break;
  }
}

void RecordingView::setVolume(float volume) {
  volume_ = volume;
  if (state_ != RecordingState::volumn) return;
  if (const auto level = viewWithTag(levelTag)) {
    const Rect frame = level->frame();
    const double height = volume * fullLevel;
    level->setFrame({frame.x, frame.y + frame.height - height, frame.width, height});
  }
}

void RecordingView::setSeconds(int seconds) {
  if (std::exchange(seconds_, seconds) != seconds) showTime();
}

// Above the pictures, where every state has room.
void RecordingView::showTime() {
  const auto rest = std::to_string(seconds_ % 60);
  const auto time = std::to_string(seconds_ / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
  setText(state_ == RecordingState::timeTooShort ? "" : time);
}

void RecordingView::addImage(const char* name, const Rect& frame) {
  const auto image = std::make_shared<ImageView>(frame);
  image->setImageName(name);
  addSubview(image);
}

void RecordingView::addLevel(const Rect& besides) {
  const auto level =
      std::make_shared<ImageView>(Rect{besides.x + besides.width + 6, besides.y + besides.height - 33, 20, 33});
  level->setImageName("ico_talk_hint_volume");
  level->setContentMode(ContentMode::bottom);
  level->setClipsToBounds(true);
  level->setTag(levelTag);
  addSubview(level);
}

void RecordingView::addCaption(const char* text) {
  const auto caption = std::make_shared<Label>(Rect{0, side - 33, side, 23});
  caption->setText(text);
  caption->setTextColor(Color::white());
  caption->setFontSize(textSize);
  caption->setAlignment(TextAlignment::center);
  caption->setShadow(true);
  caption->setAnnounced(true);
  addSubview(caption);
}

}  // namespace orivex
