#pragma once

#include <memory>

namespace orivex {

class OVKFApi;
class ScreenEdgePanGesture;

/// The back-swipe from the left edge: the page follows the finger over the snapshot of what showed before.
class EdgePanBack {
 public:
  /// `screen` owns this object.
  explicit EdgePanBack(OVKFApi& screen) : screen_(screen) {}

  void handle(const ScreenEdgePanGesture& gesture);

 private:
  void follow(double translation);
  void release(double translation);

  OVKFApi& screen_;
};

}  // namespace orivex
