#pragma once

#include <memory>

namespace orivex {

class OVKFApi;
class ScreenEdgePanGesture;
class View;
class Window;

/// The back-swipe from the left edge: the page, or the placeholder that still covers it, follows the finger over a
/// snapshot of what showed before.
class EdgePanBack {
 public:
  /// `screen` owns this object.
  explicit EdgePanBack(OVKFApi& screen) : screen_(screen) {}

  /// Takes a picture of what shows in `window`; the earlier one stays when nothing does.
  void takeSnapshot(const std::shared_ptr<Window>& window);
  const std::shared_ptr<View>& snapshot() const { return snapshot_; }

  /// Puts gesture and picture into the screen's view, if there is a picture of the window in which the screen is.
  void install();

  /// Places the picture in the screen's view as it is now.
  void layout();

  /// Puts the page back where it belongs, at once, and forgets a slide on its way.
  void reset();

 private:
  void handle(const ScreenEdgePanGesture& gesture);
  void move(double translation);
  void release(double translation);

  OVKFApi& screen_;
  std::shared_ptr<View> snapshot_;
  double snapshotTop_ = 0;  // points from the top of its window
  std::weak_ptr<Window> window_;
  /// Counts what moves the page, so that a slide ends when something else takes over.
  int motion_ = 0;
  bool isLeaving_ = false;
};

}  // namespace orivex
