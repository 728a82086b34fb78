#include "EdgePanBack.h"

#include <algorithm>
#include <string>
#include <utility>

#include "ScreenGuard.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ui/ScreenEdgePanGesture.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/voice/RecordManager.h"

namespace orivex {
namespace {

// Share of the width past which a release goes back.
constexpr double threshold = 0.3;
constexpr double slideSeconds = 0.3;

// Points from the top of its window; a view that is not in one counts as far as it goes.
double topOf(const View& view) {
  double top = 0;
  for (const auto* part = &view; part; part = part->superview()) top += part->frame().y;
  return top;
}

}  // namespace

void EdgePanBack::takeSnapshot(const std::shared_ptr<Window>& window) {
  window_ = window;
  auto top = window ? window->rootViewController() : nullptr;
  while (top && top->presentedViewController() && top->presentedViewController()->isViewInWindow()) {
    top = top->presentedViewController();
  }
  auto snapshot = top ? top->view()->snapshotView() : nullptr;
  if (!snapshot) return;
  snapshot->setFrame(top->view()->bounds());
  snapshotTop_ = topOf(*top->view());
  snapshot_ = std::move(snapshot);
}

void EdgePanBack::install() {
  if (screen_.isRoot()) {
    snapshot_ = nullptr;  // nothing is behind it
  } else if (auto* const window = screen_.window(); window && window != window_.lock().get()) {
    snapshot_ = nullptr;  // the visitor comes from another window than the session did
    takeSnapshot(window->shared_from_this());
  }
  if (!snapshot_) return;
  const auto& view = screen_.view();
  // The view may outlive the screen, with its gesture.
  view->addGesture(std::make_shared<ScreenEdgePanGesture>(
      guarded(screen_, [this](const ScreenEdgePanGesture& gesture) { handle(gesture); })));
  // Under a title bar it reaches beyond the screen.
  snapshot_->setUserInteractionEnabled(false);
  view->setClipsToBounds(true);
  view->insertSubview(snapshot_, 0);
}

// Under a title bar, the screen begins lower than what it covers.
void EdgePanBack::layout() {
  if (!snapshot_) return;
  const auto& view = *screen_.view();
  const double y = snapshotTop_ - topOf(view);
  snapshot_->setFrame({0, y, view.bounds().width, view.bounds().height - y});
}

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
  for (const auto& page : {screen_.webView(), screen_.loadView()}) {
    page->setTransform({translation, 0});
    page->setCastsShadow(translation > 0);
  }
  if (snapshot_) snapshot_->setTransform({});
}

void EdgePanBack::release(double translation) {
  const double width = screen_.view()->bounds().width;
  const double progress = width > 0 ? std::clamp(translation / width, 0.0, 1.0) : 0;
  isLeaving_ = progress > threshold;
  const double from = screen_.webView()->transform().x;
  const double to = isLeaving_ ? width : 0;
  const auto isCurrent = [this, screen = screen_.shared_from_this(), motion = ++motion_] { return motion == motion_; };
  Platform::current().animator.animate(
      slideSeconds,
      [this, isCurrent, from, to](double done) {
        if (isCurrent()) move(from + (to - from) * done);
      },
      [this, isCurrent] {
        if (isCurrent() && isLeaving_) closeScreen(screen_, false);
      });
}

}  // namespace orivex
