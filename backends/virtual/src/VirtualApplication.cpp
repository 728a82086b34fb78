#include "orivex/testing/VirtualApplication.h"

#include <utility>

#include "orivex/platform/base/Log.h"
#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {
namespace {

constexpr Size phoneSize{390, 844};
constexpr EdgeInsets phoneInsets{47, 0, 34, 0};

}  // namespace

VirtualApplication::VirtualApplication(const MainQueue& queue) : queue_(queue) {
  window_->contentView()->setMirror(this);
  window_->setSize(phoneSize);
  window_->setSafeAreaInsets(phoneInsets);
  window_->setEndEditingHandler([this](const View& view) {
    ++endEditingCount_;
    endedEditing_ = view.weak_from_this();
  });
  setStatusBarHeight(phoneInsets.top);
  scene_->addWindow(window_);
}

VirtualApplication::~VirtualApplication() {
  window_->contentView()->setMirror(nullptr);
  window_->setEndEditingHandler(nullptr);
}

std::vector<std::shared_ptr<WindowScene>> VirtualApplication::connectedScenes() const {
  requireMainThread(queue_, "Application::connectedScenes");
  if (!connected_) return {};
  return {scene_};
}

Subscription VirtualApplication::observe(ApplicationEvent event, std::function<void()> handler) {
  requireMainThread(queue_, "Application::observe");
  auto& observers = event == ApplicationEvent::didBecomeActive ? didBecomeActive_ : willResignActive_;
  return observers.add(std::move(handler));
}

bool VirtualApplication::canOpen(const Url& url) const {
  requireMainThread(queue_, "Application::canOpen");
  return openableSchemes_.contains(url.scheme());
}

void VirtualApplication::open(const Url& url) {
  if (canOpen(url)) {
    opened_.push_back(url);
  } else {
    log::print("No application opens " + url.absoluteString());
  }
}

void VirtualApplication::setWindowShown(bool shown) {
  scene_->removeWindow(*window_);
  if (shown) scene_->addWindow(window_);
}

void VirtualApplication::setStatusBarHeight(double height) {
  scene_->setStatusBarHeight(height);
  window_->contentView()->layOut();
}

std::shared_ptr<View> VirtualApplication::snapshot(const View& view) {
  return drawn_ ? std::make_shared<VirtualSnapshot>(view) : nullptr;
}

}  // namespace orivex::testing
