#pragma once

#include <functional>

#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// Animates at 60 steps a second of the queue's time.
class VirtualAnimator final : public Animator {
 public:
  explicit VirtualAnimator(MainQueue& queue) : queue_(queue) {}

  void animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) override;

  /// As a visitor's setting: animations show their last step only, as soon as the queue runs.
  void setReducedMotion(bool reduced) { reducedMotion_ = reduced; }

 private:
  MainQueue& queue_;
  bool reducedMotion_ = false;
};

}  // namespace orivex::testing
