#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orivex/Export.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex {

/// A stack of screens of which the top one shows, under a navigation bar that can be hidden. The bar and the toolbar
/// are empty views that the host fills; the tab bar belongs to the host's own chrome around the stack.
class ORIVEX_API NavigationController : public ViewController {
 public:
  /// Points below the status bar.
  static constexpr double barHeight = 44;

  explicit NavigationController(const std::shared_ptr<ViewController>& root);
  ~NavigationController() override;

  std::shared_ptr<ViewController> topViewController() const { return stack_.back(); }
  bool contains(const ViewController& controller) const;

  void pushViewController(const std::shared_ptr<ViewController>& controller, bool animated);

  /// Takes the top screen off; the root stays.
  void popViewController(bool animated);

  const std::shared_ptr<View>& navigationBar() const { return bar_; }
  void setNavigationBarHidden(bool hidden);
  void setNavigationBarTranslucent(bool translucent);

  const std::shared_ptr<View>& toolbar() const { return toolbar_; }

  /// Null unless the host has one.
  const std::shared_ptr<View>& hostTabBar() const { return tabBar_; }
  void setHostTabBar(std::shared_ptr<View> tabBar) { tabBar_ = std::move(tabBar); }

  bool goBack() override { return topViewController()->goBack(); }
  void viewDidLoad() override;
  void viewDidLayoutSubviews() override { layout(); }
  void didLeaveWindow() override;
  void beginAppearance(bool appearing, bool animated) override;
  void endAppearance(bool animated) override;

 private:
  struct Slide;

  void layout();
  void finishSlide(const Slide& slide, const ViewController* leaving, const ViewController* arriving);
  void slide(const std::shared_ptr<ViewController>& leaving, const std::shared_ptr<ViewController>& arriving,
             bool forward, bool animated);

  std::vector<std::shared_ptr<ViewController>> stack_;  // from the root to the top
  std::shared_ptr<View> pages_ = std::make_shared<View>();
  std::shared_ptr<View> bar_ = std::make_shared<View>();
  std::shared_ptr<View> toolbar_ = std::make_shared<View>();
  std::shared_ptr<View> tabBar_;
  bool translucent_ = true;
  std::shared_ptr<Slide> slide_;  // under way; a newer one takes over from it
};

}  // namespace orivex
