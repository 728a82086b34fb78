#include "orivex/platform/ui/Window.h"

#include <algorithm>

#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex {

void WindowScene::addWindow(const std::shared_ptr<Window>& window) {
  windows_.push_back(window);
  window->scene_ = weak_from_this();
}

void WindowScene::removeWindow(const Window& window) {
  std::erase_if(windows_, [&](const std::shared_ptr<Window>& other) {
    if (other.get() != &window) return false;
    other->scene_.reset();
    return true;
  });
}

Window::Window() : content_(std::make_shared<View>()) {
  content_->setClipsToBounds(true);
  content_->shownIn_ = this;
}

Window::~Window() {
  content_->shownIn_ = nullptr;
  if (root_) root_->rootOf_ = nullptr;
}

void Window::setSize(Size size) {
  content_->setFrame({0, 0, size.width, size.height});
  const auto views = content_->subviews();  // a screen that is laid out may change what the window shows
  const auto over = screenFrame();
  // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): no subview is null
  for (const auto& view : views) view->setFrame(root_ && root_->view_ == view ? bounds() : over);
}

Rect Window::screenFrame() const {
  const double top = titleBarHeight_ && root_ && root_->isViewInWindow() ? titleBarHeight_() : 0;
  return {0, top, bounds().width, bounds().height - top};
}

std::shared_ptr<ViewController> Window::topScreen() const {
  auto top = root_;
  while (top && top->presentedViewController()) top = top->presentedViewController();
  return top;
}

bool Window::goBack() const {
  const auto top = topScreen();
  return top && top->goBack();
}

void Window::setShowing(bool showing) const {
  const auto top = topScreen();
  if (!top) return;
  top->beginAppearance(showing, false);
  top->endAppearance(false);
}

void Window::setRootViewController(const std::shared_ptr<ViewController>& controller) {
  const auto old = std::exchange(root_, controller);
  if (old) {
    old->rootOf_ = nullptr;
    if (const auto presented = old->takePresented()) presented->leaveAtOnce();
    old->leaveAtOnce();
    old->view()->setHidden(false);
  }
  if (!controller) return;
  controller->rootOf_ = this;
  const auto view = controller->view();
  view->setFrame(content_->bounds());
  controller->beginAppearance(true, false);
  content_->insertSubview(view, 0);
  controller->endAppearance(false);
}

void Window::endEditing(const View& view) const {
  if (endEditing_) endEditing_(view);
}

std::shared_ptr<Window> firstWindow(const Application& application) {
  const auto scenes = application.connectedScenes();
  if (scenes.empty() || scenes.front()->windows().empty()) return nullptr;
  return scenes.front()->windows().front();
}

double statusBarHeight(const Window* window) {
  const auto scene = window ? window->scene() : nullptr;
  return scene ? scene->statusBarHeight() : 0;
}

}  // namespace orivex
