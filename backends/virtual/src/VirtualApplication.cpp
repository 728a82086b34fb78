#include "orivex/testing/VirtualApplication.h"

#include <utility>

#include "ThreadCheck.h"
#include "ViewMirrorTree.h"

#include "orivex/platform/base/Log.h"

namespace orivex::testing {
namespace {

constexpr Size phoneSize{390, 844};
constexpr EdgeInsets phoneInsets{47, 0, 34, 0};

}  // namespace

VirtualApplication::VirtualApplication(const MainQueue& queue)
    : queue_(queue), mirrors_(std::make_unique<ViewMirrorTree>(*window_->contentView())) {
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

void VirtualApplication::setStatusBarHeight(std::optional<double> height) {
  if (height) {
    scene_->setStatusBarManager(StatusBarManager{{0, 0, window_->bounds().width, *height}});
  } else {
    scene_->setStatusBarManager(std::nullopt);
  }
  window_->contentView()->layOut();
}

void VirtualApplication::setDrawn(bool drawn) {
  mirrors_->setDrawn(drawn);
}

}  // namespace orivex::testing
