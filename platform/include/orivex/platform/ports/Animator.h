#pragma once

#include <functional>

#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"

namespace orivex {

/// Drives animations at the display's rate. Main thread.
class Animator : public Interface {
 public:
  /// Calls `step` with an eased progress that ends at exactly 1 after `seconds`, then `completion` once. A visitor who
  /// asked for reduced motion gets the last step at once. `step` is never called inside this call.
  virtual void animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) = 0;
};

}  // namespace orivex
