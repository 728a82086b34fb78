#include "orivex/testing/VirtualAnimator.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "ThreadCheck.h"

namespace orivex::testing {
namespace {

constexpr double stepsPerSecond = 60;

// Slow at both ends, as animations of screens are.
double eased(double progress) {
  return progress * progress * (3 - 2 * progress);
}

struct Animation {
  double start = 0;
  double seconds = 0;
  int stepsDone = 0;
  std::function<void(double)> step;
  Once<void()> completion;
};

void scheduleStep(MainQueue& queue, std::unique_ptr<Animation> animation) {
  const double elapsed = std::min((animation->stepsDone + 1) / stepsPerSecond, animation->seconds);
  const double due = animation->start + elapsed;
  queue.asyncAfter(due - queue.now(), [&queue, elapsed, animation = std::move(animation)]() mutable {
    const bool last = elapsed >= animation->seconds;
    animation->step(last ? 1.0 : eased(elapsed / animation->seconds));
    if (last) {
      std::move(animation->completion)();
    } else {
      ++animation->stepsDone;
      scheduleStep(queue, std::move(animation));
    }
  });
}

}  // namespace

void VirtualAnimator::animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) {
  requireMainThread(queue_, "Animator::animate");
  auto animation = std::make_unique<Animation>();
  animation->start = queue_.now();
  animation->seconds = reducedMotion_ ? 0 : seconds;
  animation->step = std::move(step);
  animation->completion = std::move(completion);
  scheduleStep(queue_, std::move(animation));
}

}  // namespace orivex::testing
