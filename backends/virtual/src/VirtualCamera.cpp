#include "orivex/testing/VirtualCamera.h"

#include <utility>

#include "ThreadCheck.h"

namespace orivex::testing {

void VirtualCamera::present(const CameraOptions& options, View& /*view*/, Once<void(CameraOutcome)> completion) {
  requireMainThread(queue_, "Camera::present");
  if (presented_) return;
  presented_ = options;
  completion_ = std::move(completion);
}

void VirtualCamera::finish(CameraOutcome outcome) {
  presented_.reset();
  queue_.async([completion = std::move(completion_), outcome = std::move(outcome)]() mutable {
    std::move(completion)(std::move(outcome));
  });
}

}  // namespace orivex::testing
