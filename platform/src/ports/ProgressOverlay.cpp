#include "orivex/platform/ports/ProgressOverlay.h"

#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {

std::shared_ptr<Window> ProgressOverlay::shownIn(const Application& application) const {
  const std::weak_ptr<Window> none;
  const bool isUnset = !window_.owner_before(none) && !none.owner_before(window_);
  if (isUnset) return firstWindow(application);
  const auto window = window_.lock();
  for (const auto& scene : application.connectedScenes()) {
    if (window && window->scene() == scene) return window;
  }
  return nullptr;
}

}  // namespace orivex
