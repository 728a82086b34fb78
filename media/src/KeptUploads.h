#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ui/View.h"

namespace orivex {

/// What could not be sent, for which a bar over its window offers another try. It is kept until the visitor has it sent
/// again or lets go of it, or until its screen leaves. Main thread.
class KeptUploads {
 public:
  static KeptUploads& shared();

  /// `view` belongs to the screen for which it was sent; `sendAgain` starts the same upload anew; `cause`, in words, is
  /// why it failed, if that is known.
  void keep(View& view, std::string cause, Task sendAgain);

  KeptUploads(const KeptUploads&) = delete;
  KeptUploads& operator=(const KeptUploads&) = delete;

 private:
  friend class ProcessState;
  struct Kept {
    std::weak_ptr<View> view;
    Subscription leaving;
    std::string cause;
    Task sendAgain;
    Window* window() const;
  };

  KeptUploads() = default;
  ~KeptUploads() = default;

  std::vector<Kept> take(const std::function<bool(const Kept&)>& wanted);
  void offer();

  std::vector<Kept> kept_;
};

}  // namespace orivex
