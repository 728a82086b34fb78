#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ui/Window.h"

namespace orivex::testing {

/// What `View::snapshotView` gives on the virtual device: a view of the same frame that remembers whose picture it is.
class VirtualSnapshot final : public View {
 public:
  explicit VirtualSnapshot(const View& original) : View(original.frame()), original_(original.weak_from_this()) {}

  /// Null once that view is gone.
  std::shared_ptr<const View> original() const { return original_.lock(); }

 private:
  std::weak_ptr<const View> original_;
};

/// A host application with one scene and one window, at first as on a phone: 390 x 844 points, a status bar of 47
/// points, insets of 47 at the top and 34 at the bottom.
class VirtualApplication final : public Application, private ViewMirror {
 public:
  explicit VirtualApplication(const MainQueue& queue);
  ~VirtualApplication() override;

  std::vector<std::shared_ptr<WindowScene>> connectedScenes() const override;
  [[nodiscard]] Subscription observe(ApplicationEvent event, std::function<void()> handler) override;
  bool isRightToLeft() const override { return rightToLeft_; }
  bool canOpen(const Url& url) const override;
  void open(const Url& url) override;

  /// The window, whether or not it is on a screen.
  const std::shared_ptr<Window>& window() const { return window_; }
  const std::shared_ptr<WindowScene>& scene() const { return scene_; }

  /// Without a scene the application shows nothing at all.
  void setSceneConnected(bool connected) { connected_ = connected; }

  /// Whether the scene has the window.
  void setWindowShown(bool shown);

  /// In points; 0: there is no status bar.
  void setStatusBarHeight(double height);

  /// Whether the window has been drawn: until then a snapshot of a view in it is null.
  void setDrawn(bool drawn) { drawn_ = drawn; }

  /// From left to right at first.
  void setRightToLeft(bool rightToLeft) { rightToLeft_ = rightToLeft; }

  /// How often something asked to take the keyboard focus away, and from which view last; null when never or gone.
  int endEditingCount() const { return endEditingCount_; }
  std::shared_ptr<const View> lastEndedEditing() const { return endedEditing_.lock(); }

  /// Tells the observers that the application came to the front, or is about to leave it.
  void becomeActive() { didBecomeActive_.notify(); }
  void resignActive() { willResignActive_.notify(); }

  /// Which schemes, in lower case, some application opens; "http" and "https" at first.
  void setOpenableSchemes(std::set<std::string, std::less<>> schemes) { openableSchemes_ = std::move(schemes); }

  /// What was opened, in order.
  const std::vector<Url>& openedUrls() const { return opened_; }
  void forgetOpenedUrls() { opened_.clear(); }

 private:
  void viewChanged(ViewChange /*change*/) override {}
  void viewDestroyed() override {}
  std::shared_ptr<View> snapshot(const View& view) override;

  const MainQueue& queue_;
  std::shared_ptr<WindowScene> scene_ = std::make_shared<WindowScene>();
  std::shared_ptr<Window> window_ = std::make_shared<Window>();
  bool connected_ = true;
  bool drawn_ = true;
  bool rightToLeft_ = false;
  std::set<std::string, std::less<>> openableSchemes_{"http", "https"};
  std::vector<Url> opened_;
  int endEditingCount_ = 0;
  std::weak_ptr<const View> endedEditing_;
  Observers<> didBecomeActive_;
  Observers<> willResignActive_;
};

}  // namespace orivex::testing
