#include "orivex/platform/ui/NavigationController.h"

#include <algorithm>
#include <utility>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {
namespace {

constexpr double pushSeconds = 0.35;

// How far the screen underneath moves along with the one that slides over it.
constexpr double parallax = 0.3;

}  // namespace

struct NavigationController::Slide {
  std::shared_ptr<ViewController> leaving;
  std::shared_ptr<ViewController> arriving;
};

NavigationController::NavigationController(const std::shared_ptr<ViewController>& root) : stack_{root} {
  root->navigation_ = this;
}

NavigationController::~NavigationController() {
  for (const auto& controller : stack_) controller->navigation_ = nullptr;
}

bool NavigationController::contains(const ViewController& controller) const {
  return std::ranges::any_of(stack_, [&](const auto& screen) { return screen.get() == &controller; });
}

void NavigationController::viewDidLoad() {
  view()->setBackgroundColor(Color::white());
  bar_->setBackgroundColor(Color::white());
  toolbar_->setHidden(true);
  pages_->setClipsToBounds(true);
  pages_->addSubview(topViewController()->view());
  view()->addSubview(pages_);
  view()->addSubview(bar_);
  view()->addSubview(toolbar_);
  layout();
}

void NavigationController::layout() {
  if (!isViewLoaded()) return;
  const Rect bounds = view()->bounds();
  // Before the stack is in a window, it is laid out for the one in which it will most likely be.
  const auto likely = firstWindow(Platform::current().application);
  const Window* window = isViewInWindow() ? view()->window() : likely.get();
  const double barBottom = statusBarHeight(window) + barHeight;
  bar_->setFrame({0, 0, bounds.width, barBottom});
  toolbar_->setFrame({0, bounds.height - barHeight, bounds.width, barHeight});
  pages_->setFrame(bounds);
  const double top = bar_->isHidden() || translucent_ ? 0 : barBottom;
  topViewController()->view()->setFrame({0, top, bounds.width, bounds.height - top});
}

void NavigationController::setNavigationBarHidden(bool hidden) {
  bar_->setHidden(hidden);
  layout();
}

void NavigationController::setNavigationBarTranslucent(bool translucent) {
  translucent_ = translucent;
  layout();
}

void NavigationController::beginAppearance(bool appearing, bool animated) {
  ViewController::beginAppearance(appearing, animated);
  if (appearing) layout();  // the window may have another status bar than the one it was laid out for
  topViewController()->beginAppearance(appearing, animated);
}

void NavigationController::endAppearance(bool animated) {
  ViewController::endAppearance(animated);
  topViewController()->endAppearance(animated);
}

void NavigationController::didLeaveWindow() {
  const auto screens = stack_;  // a screen that hears of it may change the stack
  for (const auto& screen : screens) screen->didLeaveWindow();
}

void NavigationController::pushViewController(const std::shared_ptr<ViewController>& controller, bool animated) {
  const bool elsewhere = controller->isViewInWindow() && !pages_->hasSubview(*controller->view());
  if (controller->navigation_ || controller->presenting_ || elsewhere || controller.get() == this) {
    log::warning("Cannot push a screen that is already shown elsewhere");
    return;
  }
  const auto leaving = topViewController();
  stack_.push_back(controller);
  controller->navigation_ = this;
  slide(leaving, controller, true, animated);
}

void NavigationController::popViewController(bool animated) {
  if (stack_.size() < 2) return;
  const auto leaving = topViewController();
  stack_.pop_back();
  slide(leaving, topViewController(), false, animated);
  leaving->navigation_ = nullptr;
}

// Ends what `slide` left unfinished for screens that have no part in the one that takes over.
void NavigationController::finishSlide(const Slide& slide, const ViewController* leaving,
                                       const ViewController* arriving) {
  for (const auto& controller : {slide.leaving, slide.arriving}) {
    if (controller.get() == leaving || controller.get() == arriving) continue;
    controller->view()->removeFromSuperview();
    controller->view()->setTransform({});
    controller->endAppearance(false);
  }
}

void NavigationController::slide(const std::shared_ptr<ViewController>& leaving,
                                 const std::shared_ptr<ViewController>& arriving, bool forward, bool animated) {
  if (!isViewLoaded()) return;
  const auto slide = std::make_shared<Slide>(Slide{leaving, arriving});
  if (const auto before = std::exchange(slide_, slide)) finishSlide(*before, leaving.get(), arriving.get());
  // A stack that is covered, or on its way out, changes without its screens appearing.
  if (appearance_ == Appearance::appearing || appearance_ == Appearance::appeared) {
    leaving->beginAppearance(false, animated);
    arriving->beginAppearance(true, animated);
  }
  const auto arrivingView = arriving->view();
  const auto leavingView = leaving->view();
  pages_->insertSubview(arrivingView, forward ? pages_->subviews().size() : 0);
  layout();
  const auto self = std::static_pointer_cast<NavigationController>(shared_from_this());
  const double width = view()->bounds().width;
  const auto place = [=](double progress) {
    if (self->slide_ != slide) return;
    const double out = forward ? -parallax : 1.0;
    const double in = forward ? 1.0 : -parallax;
    leavingView->setTransform({width * out * progress, 0});
    arrivingView->setTransform({width * in * (1 - progress), 0});
  };
  auto finish = [=] {
    if (self->slide_ != slide) return;
    self->slide_ = nullptr;
    arrivingView->setTransform({});
    leavingView->setTransform({});
    leavingView->removeFromSuperview();
    leaving->endAppearance(animated);
    arriving->endAppearance(animated);
  };
  if (!animated || !isViewInWindow()) {
    finish();
    return;
  }
  place(0);
  Platform::current().animator.animate(pushSeconds, place, finish);
}

}  // namespace orivex
