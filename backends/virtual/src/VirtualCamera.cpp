#include "orivex/testing/VirtualCamera.h"

#include <memory>
#include <utility>

#include "ThreadCheck.h"

#include "orivex/platform/ui/View.h"

namespace orivex::testing {

void VirtualCamera::present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) {
  requireMainThread(queue_, "Camera::present");
  if (presented_) return;
  presented_ = options;
  completion_ = std::move(completion);
  leaves_ = view.observeLeaving([this] {
    presented_.reset();
    completion_ = nullptr;
  });
}

void VirtualCamera::finish(CameraOutcome outcome) {
  presented_.reset();
  // On the heap: GCC 12 loses track of the variant inside a moved closure and warns of it.
  auto kept = std::make_unique<CameraOutcome>(std::move(outcome));
  queue_.async([completion = std::move(completion_), kept = std::move(kept)]() mutable {
    std::move(completion)(std::move(*kept));
  });
}

}  // namespace orivex::testing
