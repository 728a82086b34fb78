#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "orivex/Export.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ui/View.h"

namespace orivex {

class ViewController;
class Window;

/// Windows that the desktop treats as one, with the status bar above them, if any.
class ORIVEX_API WindowScene : public std::enable_shared_from_this<WindowScene> {
 public:
  const std::vector<std::shared_ptr<Window>>& windows() const { return windows_; }
  void addWindow(const std::shared_ptr<Window>& window);
  void removeWindow(const Window& window);

  /// Height of the status bar in points; 0 without one.
  double statusBarHeight() const { return statusBarHeight_; }
  void setStatusBarHeight(double height) { statusBarHeight_ = height; }

 private:
  std::vector<std::shared_ptr<Window>> windows_;
  double statusBarHeight_ = 0;
};

/// A window of the host: the root of a tree of views. Its owner sets the size and the insets.
class ORIVEX_API Window : public std::enable_shared_from_this<Window> {
 public:
  Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window();

  Rect bounds() const { return content_->bounds(); }
  void setSize(Size size);

  /// Where presented screens stand: all of the window but its title bar, if the root screen holds that.
  Rect screenFrame() const;

  /// The backend's way to tell the height in points, from the top, of a title bar that stays usable.
  void setTitleBarHeight(std::function<double()> height) { titleBarHeight_ = std::move(height); }

  /// The visitor has asked to go back with a key or a button: asks the uppermost screen. False when it stays.
  bool goBack() const;

  const EdgeInsets& safeAreaInsets() const { return insets_; }
  /// The screens keep their places until `contentView()->layOut()`.
  void setSafeAreaInsets(EdgeInsets insets) { insets_ = insets; }

  /// The scene that shows the window; null for a window on no screen.
  std::shared_ptr<WindowScene> scene() const { return scene_.lock(); }

  /// Replaces the root: the old one's view leaves, the new one's fills the window, with the appearance calls of both.
  void setRootViewController(const std::shared_ptr<ViewController>& controller);
  const std::shared_ptr<ViewController>& rootViewController() const { return root_; }

  /// The window has come to the display, or is not on it any more: tells the uppermost screen that it appears or
  /// disappears. A window that says nothing is on the display.
  void setShowing(bool showing) const;

  /// The view that holds whatever the window shows; presented screens lie above the root's view.
  const std::shared_ptr<View>& contentView() const { return content_; }

  /// The backend's way to take the keyboard focus away from a view of this window.
  void setEndEditingHandler(std::function<void(const View&)> handler) { endEditing_ = std::move(handler); }
  void endEditing(const View& view) const;

 private:
  friend class WindowScene;

  std::shared_ptr<ViewController> topScreen() const;

  std::shared_ptr<View> content_;
  std::shared_ptr<ViewController> root_;
  std::weak_ptr<WindowScene> scene_;
  EdgeInsets insets_;
  std::function<void(const View&)> endEditing_;
  std::function<double()> titleBarHeight_;
};

class Application;

/// The first window of the first connected scene; null when there is none.
std::shared_ptr<Window> firstWindow(const Application& application);

/// Height in points of the status bar over `window`; 0 without a window, a scene or a status bar.
double statusBarHeight(const Window* window);

}  // namespace orivex
