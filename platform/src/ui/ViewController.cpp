#include "orivex/platform/ui/ViewController.h"

#include <functional>
#include <utility>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ui/NavigationController.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {
namespace {

constexpr double presentationSeconds = 0.35;

// Moves a view up from below the window's edge into its place (`arriving`) or back down, as long as `wanted` holds.
void slideVertically(const std::shared_ptr<View>& view, bool arriving, bool animated, std::function<bool()> wanted,
                     Once<void()> completion) {
  const double height = view->frame().height;
  const auto place = [view, height, arriving, wanted = std::move(wanted)](double progress) {
    if (wanted()) view->setTransform({0, height * (arriving ? 1 - progress : progress)});
  };
  if (!animated) {
    place(arriving ? 1.0 : 0.0);
    std::move(completion)();
    return;
  }
  place(0);
  Platform::current().animator.animate(presentationSeconds, place, std::move(completion));
}

}  // namespace

ViewController::~ViewController() {
  if (const auto top = takePresented()) top->leaveAtOnce();
}

std::shared_ptr<View> ViewController::makeView(const Rect& frame) {
  return std::make_shared<View>(frame);
}

const std::shared_ptr<View>& ViewController::view() {
  if (!view_) {
    const auto current = firstWindow(Platform::current().application);
    const auto* const shownIn = window() ? window() : current.get();
    view_ = makeView(shownIn ? shownIn->bounds() : Rect{});
    view_->setLayoutHandler([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->viewDidLayoutSubviews();
    });
    viewDidLoad();
  }
  return view_;
}

Window* ViewController::window() const {
  for (const auto* screen = this; screen; screen = screen->presentingViewController()) {
    if (screen->isViewInWindow()) return screen->view_->window();
    if (screen->outermost().isViewInWindow()) return screen->outermost().view_->window();
    if (screen->outermost().rootOf_) return screen->outermost().rootOf_;
  }
  return nullptr;
}

bool ViewController::isRoot() const {
  return rootOf_ != nullptr;
}

void ViewController::beginAppearance(bool appearing, bool animated) {
  const auto wanted = appearing ? Appearance::appearing : Appearance::disappearing;
  const auto reached = appearing ? Appearance::appeared : Appearance::disappeared;
  if (appearance_ == wanted || appearance_ == reached) return;
  appearance_ = wanted;
  if (view_) view_->setShowing(appearing);
  if (appearing) {
    viewWillAppear(animated);
  } else {
    viewWillDisappear(animated);
  }
}

void ViewController::endAppearance(bool animated) {
  if (appearance_ == Appearance::appearing) {
    appearance_ = Appearance::appeared;
    viewDidAppear(animated);
  } else if (appearance_ == Appearance::disappearing) {
    appearance_ = Appearance::disappeared;
    viewDidDisappear(animated);
  }
}

const ViewController& ViewController::outermost() const {
  const ViewController* outermost = this;
  while (outermost->navigation_) outermost = outermost->navigation_;
  return *outermost;
}

void ViewController::present(const std::shared_ptr<ViewController>& controller, bool animated,
                             Once<void()> completion) {
  if (navigation_) return navigation_->present(controller, animated, std::move(completion));
  Window* const window = isViewLoaded() ? view()->window() : nullptr;
  if (!window || presented_ || controller->presenting_ || controller->navigation_ || controller->isViewInWindow()) {
    log::warning("Cannot present a screen: the presenter is in no window, or one of the two is busy");
    return;
  }
  presented_ = controller;
  controller->presenting_ = this;
  const auto arriving = controller->view();
  arriving->setFrame(window->screenFrame());
  const auto self = shared_from_this();
  beginAppearance(false, animated);
  controller->beginAppearance(true, animated);
  window->contentView()->addSubview(arriving);
  const auto wanted = [self, controller] { return self->presented_ == controller; };
  slideVertically(arriving, true, animated, wanted,
                  [self, controller, wanted, window = window->shared_from_this(), animated,
                   completion = std::move(completion)]() mutable {
                    if (wanted()) {
                      // Hidden, not removed: what is covered need not be drawn, and comes back as it was.
                      // A title bar in it stays usable.
                      self->view_->setHidden(window->screenFrame() == window->bounds());
                      self->endAppearance(animated);
                      controller->endAppearance(animated);
                    }
                    std::move(completion)();
                  });
}

void ViewController::dismiss(bool animated, Once<void()> completion) {
  if (navigation_) return navigation_->dismiss(animated, std::move(completion));
  ViewController* presenter = presented_ ? this : presenting_;
  if (presenter) presenter->dismissPresented(animated, std::move(completion));
}

// Takes everything off that lies over this screen, and returns the uppermost of it, which is still in the window.
std::shared_ptr<ViewController> ViewController::takePresented() {
  auto top = std::exchange(presented_, nullptr);
  if (!top) return nullptr;
  top->presenting_ = nullptr;
  auto above = top->takePresented();
  if (!above) return top;
  top->view_->removeFromSuperview();
  top->view_->setHidden(false);
  top->endAppearance(false);
  return above;
}

void ViewController::leaveAtOnce() {
  beginAppearance(false, false);
  view_->removeFromSuperview();
  endAppearance(false);
  didLeaveWindow();
}

void ViewController::dismissPresented(bool animated, Once<void()> completion) {
  const auto self = shared_from_this();
  const auto leaving = takePresented();
  view_->setHidden(false);
  leaving->beginAppearance(false, animated);
  beginAppearance(true, animated);
  slideVertically(
      leaving->view_, false, animated, [] { return true; },
      [self, leaving, animated, completion = std::move(completion)]() mutable {
        leaving->view_->removeFromSuperview();
        leaving->view_->setTransform({});
        leaving->endAppearance(animated);
        self->endAppearance(animated);
        std::move(completion)();
      });
}

}  // namespace orivex
