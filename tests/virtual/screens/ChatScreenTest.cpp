#include "ChatScreenTest.h"

namespace orivex::testing {

ChatScreenTest::ChatScreenTest() {
  device_.application().window()->setRootViewController(hostStack_);
}

std::shared_ptr<OVKFApi> ChatScreenTest::started() {
  auto screen = std::make_shared<OVKFApi>();
  screen->startSession("https://chat.example", "entry", "key", std::make_shared<UserMappingModel>());
  return screen;
}

std::shared_ptr<OVKFApi> ChatScreenTest::present() {
  auto screen = started();
  hostStack_->present(screen, false);
  return screen;
}

std::shared_ptr<OVKFApi> ChatScreenTest::presentChecked() {
  auto screen = present();
  device_.runUntilIdle();
  return screen;
}

std::shared_ptr<OVKFApi> ChatScreenTest::push() {
  auto screen = started();
  hostStack_->pushViewController(screen, false);
  return screen;
}

std::shared_ptr<OVKFApi> ChatScreenTest::presentInSecond() {
  if (!second_->rootViewController()) {
    second_->setSize({300, 500});
    device_.application().scene()->addWindow(second_);
    second_->setRootViewController(std::make_shared<ViewController>());
  }
  auto screen = started();
  second_->rootViewController()->present(screen, false);
  return screen;
}

VirtualWebEngine& ChatScreenTest::engineOf(const std::shared_ptr<WebView>& view) {
  return dynamic_cast<VirtualWebEngine&>(view->engine());
}

}  // namespace orivex::testing
