#pragma once

#include <memory>

namespace orivex {

class OVKFApi;
class ScreenEdgePanGesture;

/// The back-swipe from the left edge: the page, or the placeholder that still covers it, follows the finger over the
/// snapshot of what showed before.
class EdgePanBack {
 public:
  /// `screen` owns this object.
  explicit EdgePanBack(OVKFApi& screen) : screen_(screen) {}

  void handle(const ScreenEdgePanGesture& gesture);

  /// Puts the page back where it belongs, at once, and forgets a slide on its way.
  void reset();

 private:
  void move(double translation);
  void release(double translation);

  OVKFApi& screen_;
  /// Counts what moves the page, so that a slide ends when something else takes over.
  int motion_ = 0;
  bool isLeaving_ = false;
};

}  // namespace orivex
