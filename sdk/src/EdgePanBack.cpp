#include "EdgePanBack.h"

#include <algorithm>
#include <string>

#include "Closing.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ui/ScreenEdgePanGesture.h"
#include "orivex/platform/ui/TakenPointers.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/voice/RecordManager.h"

namespace orivex {
namespace {

// Share of the width past which a release goes back.
constexpr double threshold = 0.3;
constexpr double settleSeconds = 0.3;

}  // namespace

void EdgePanBack::handle(const ScreenEdgePanGesture& gesture) {
  using enum ScreenEdgePanGesture::State;
  if (isLeaving_) return;
  switch (gesture.state()) {
    case changed:
      ++motion_;
      move(gesture.translation());
      break;
    case ended:
    case cancelled:
      release(gesture.translation());
      break;
    case began:
      // What the finger has pressed in the page is not meant any more.
      screen_.webView()->evaluate(std::string(pointersTakenScript));
      RecordManager::shared().cancelRecording();
      break;
    case possible:
      break;
  }
}

void EdgePanBack::reset() {
  ++motion_;
  isLeaving_ = false;
  move(0);
}

void EdgePanBack::move(double translation) {
  for (const auto& page : {screen_.webView(), screen_.loadView()}) page->setTransform({translation, 0});
  if (const auto& snapshot = screen_.previousViewSnapshot()) snapshot->setTransform({});
}

void EdgePanBack::release(double translation) {
  const double width = screen_.view()->bounds().width;
  const double progress = width > 0 ? std::clamp(translation / width, 0.0, 1.0) : 0;
  isLeaving_ = progress > threshold;
  const double from = screen_.webView()->transform().x;
  const double to = isLeaving_ ? width : 0;
  const auto isCurrent = [this, screen = screen_.shared_from_this(), motion = ++motion_] { return motion == motion_; };
  Platform::current().animator.animate(
      settleSeconds,
      [this, isCurrent, from, to](double done) {
        if (isCurrent()) move(from + (to - from) * done);
      },
      [this, isCurrent] {
        if (isCurrent() && isLeaving_) closeScreen(screen_, false);
      });
}

}  // namespace orivex
