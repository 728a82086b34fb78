#pragma once

#include "orivex/platform/ports/Animator.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

class GtkApplicationPort;

/// Animations at the frame clock of the front window, by libadwaita, which also knows of reduced motion.
class AdwAnimator final : public Animator {
 public:
  AdwAnimator(MainQueue& mainQueue, const GtkApplicationPort& application)
      : mainQueue_(mainQueue), application_(application) {}

  void animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) override;

 private:
  MainQueue& mainQueue_;
  const GtkApplicationPort& application_;
};

}  // namespace orivex::gtk
