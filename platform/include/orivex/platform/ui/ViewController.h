#pragma once

#include <memory>

#include "orivex/Export.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ui/View.h"

namespace orivex {

class NavigationController;
class Window;

enum class InterfaceStyle { unspecified, light, dark };

/// A screen: owns a view and is told about its life. Made with std::make_shared; main thread. A full-screen
/// presentation sends the presenter away: it is told that it disappears, and after the dismissal that it appears.
class ORIVEX_API ViewController : public std::enable_shared_from_this<ViewController> {
 public:
  ViewController() = default;
  ViewController(const ViewController&) = delete;
  ViewController& operator=(const ViewController&) = delete;
  virtual ~ViewController();

  /// The root view, made on first use with the size of its window; `viewDidLoad` follows at once.
  const std::shared_ptr<View>& view();
  bool isViewLoaded() const { return view_ != nullptr; }
  bool isViewInWindow() const { return view_ && view_->window(); }

  /// The window that shows the screen or is about to: that of the screen which presents it, or of the stack into which
  /// it was pushed, or that whose root it is. Null for a screen to which none of this happened.
  Window* window() const;

  /// Whether the screen is what its window shows by itself: neither presented nor pushed, so that only the host, who
  /// put it there, can take it away.
  bool isRoot() const;

  virtual void viewDidLoad() {}
  virtual void viewWillAppear(bool /*animated*/) {}
  virtual void viewDidAppear(bool /*animated*/) {}
  virtual void viewWillDisappear(bool /*animated*/) {}
  virtual void viewDidDisappear(bool /*animated*/) {}

  /// The screen has been taken out of its window with or as the root, whether it showed to the last or not.
  virtual void didLeaveWindow() {}

  /// The visitor has asked to go back with a key or a button. True when the screen does so.
  virtual bool goBack() { return false; }

  /// The view's size has changed: place what it holds.
  virtual void viewDidLayoutSubviews() {}

  /// Shows `controller` over the whole window, but for a title bar in it; a pushed screen leaves that to its navigation
  /// controller. Without a window, while another one is presented, or when `controller` is on a screen already, it is
  /// dropped with one log line.
  void present(const std::shared_ptr<ViewController>& controller, bool animated, Once<void()> completion = nullptr);

  /// Sends away what this screen presents; when it presents nothing, the screen itself or the one around it that was
  /// presented. Does nothing for a screen that was not. Of several on top of each other only the uppermost shows, and
  /// only it is told that it goes.
  void dismiss(bool animated, Once<void()> completion = nullptr);

  /// What lies over this screen, or over the navigation controllers around it; null when nothing does.
  const std::shared_ptr<ViewController>& presentedViewController() const { return outermost().presented_; }

  /// What this screen, or the navigation controller around it, lies over; null when it was not presented.
  ViewController* presentingViewController() const { return outermost().presenting_; }

  /// The navigation controller in which this screen was pushed; null outside of one.
  NavigationController* navigationController() const { return navigation_; }

  InterfaceStyle overrideInterfaceStyle() const { return style_; }
  void setOverrideInterfaceStyle(InterfaceStyle style) { style_ = style; }

  /// What the system calls around a change of what is shown; a container passes them on to its visible child.
  virtual void beginAppearance(bool appearing, bool animated);
  virtual void endAppearance(bool animated);

 protected:
  /// Makes the root view; `frame` fills the window.
  virtual std::shared_ptr<View> makeView(const Rect& frame);

 private:
  friend class NavigationController;
  friend class Window;

  const ViewController& outermost() const;
  void dismissPresented(bool animated, Once<void()> completion);
  std::shared_ptr<ViewController> takePresented();
  void leaveAtOnce();

  enum class Appearance { disappeared, appearing, appeared, disappearing };

  std::shared_ptr<View> view_;
  std::shared_ptr<ViewController> presented_;
  ViewController* presenting_ = nullptr;
  Window* rootOf_ = nullptr;
  NavigationController* navigation_ = nullptr;
  InterfaceStyle style_ = InterfaceStyle::unspecified;
  Appearance appearance_ = Appearance::disappeared;
};

}  // namespace orivex
