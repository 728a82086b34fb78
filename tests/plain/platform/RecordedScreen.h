#pragma once

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "orivex/platform/ui/NavigationController.h"
#include "orivex/platform/ui/ViewController.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex {

/// A screen that writes its life into a course shared by all screens of a test: "+A" will appear, "A+" did appear,
/// "-A" will disappear, "A-" did disappear.
template <class Base>
class Recorded : public Base {
 public:
  template <class... Arguments>
  Recorded(std::string& course, std::string name, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), course_(course), name_(std::move(name)) {}

  void viewDidLoad() override {
    Base::viewDidLoad();
    ++loads;
  }
  void viewWillAppear(bool) override { note("+" + name_); }
  void viewDidAppear(bool) override { note(name_ + "+"); }
  void viewWillDisappear(bool) override { note("-" + name_); }
  void viewDidDisappear(bool) override { note(name_ + "-"); }

  int loads = 0;

 private:
  void note(const std::string& event) {
    if (!course_.empty()) course_ += ' ';
    course_ += event;
  }

  std::string& course_;
  std::string name_;
};

using Screen = Recorded<ViewController>;
using Stack = Recorded<NavigationController>;

class ScreenTest : public ::testing::Test {
 protected:
  // Longer than any animation of a change of screens.
  static constexpr double animation = 1.0;
  static constexpr double halfway = 0.15;

  std::shared_ptr<Screen> screen(const std::string& name) { return std::make_shared<Screen>(course_, name); }
  std::shared_ptr<Stack> stack(const std::shared_ptr<ViewController>& root) {
    return std::make_shared<Stack>(course_, "N", root);
  }

  void show(const std::shared_ptr<ViewController>& root) {
    window_.setRootViewController(root);
    course_.clear();
  }

  /// What happened since the last call.
  std::string course() { return std::exchange(course_, {}); }

  std::string courseAfter(double seconds) {
    device_.advance(seconds);
    return course();
  }

  bool isShown(ViewController& controller) {
    return controller.isViewInWindow() && !controller.view()->isHidden() &&
           controller.view()->transform() == Translation{};
  }

  std::string course_;
  testing::VirtualDevice device_;
  Window& window_ = *device_.application().window();
};

}  // namespace orivex
