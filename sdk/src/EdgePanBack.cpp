#include "EdgePanBack.h"

#include <algorithm>

#include "Closing.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ui/ScreenEdgePanGesture.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex {
namespace {

// Share of the width past which a release goes back.
constexpr double threshold = 0.3;
constexpr double settleSeconds = 0.3;

}  // namespace

void EdgePanBack::handle(const ScreenEdgePanGesture& gesture) {
  using enum ScreenEdgePanGesture::State;
  switch (gesture.state()) {
    case changed:
      follow(gesture.translation());
      break;
    case ended:
    case cancelled:
      release(gesture.translation());
      break;
    case possible:
    case began:
      break;
  }
}

void EdgePanBack::follow(double translation) {
  screen_.webView()->setTransform({translation, 0});
  if (const auto& snapshot = screen_.previousViewSnapshot()) snapshot->setTransform({});
}

void EdgePanBack::release(double translation) {
  const double width = screen_.view()->bounds().width;
  const double progress = width > 0 ? std::clamp(translation / width, 0.0, 1.0) : 0;
  const bool back = progress > threshold;
  const double from = screen_.webView()->transform().x;
  const double to = back ? width : 0;
  const auto screen = screen_.shared_from_this();
  Platform::current().animator.animate(
      settleSeconds,
      [page = screen_.webView(), from, to](double done) {
        page->setTransform({from + (to - from) * done, 0});
      },
      [screen, back] {
        if (back) closeScreen(*screen, false);
      });
}

}  // namespace orivex
