#include "orivex/platform/ports/ProgressOverlay.h"

#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ui/View.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {

void ProgressOverlay::bringTo(const View& view) {
  if (auto* const shownIn = view.window()) setWindow(shownIn->weak_from_this());
}

std::shared_ptr<Window> ProgressOverlay::shownIn(const Application& application,
                                                 const std::weak_ptr<Window>& belongsTo) {
  const std::weak_ptr<Window> none;
  const bool isUnset = !belongsTo.owner_before(none) && !none.owner_before(belongsTo);
  if (isUnset) return firstWindow(application);
  auto window = belongsTo.lock();
  for (const auto& scene : application.connectedScenes()) {
    if (window && window->scene() == scene) return window;
  }
  return nullptr;
}

}  // namespace orivex
