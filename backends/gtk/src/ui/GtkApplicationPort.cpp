#include "GtkApplicationPort.h"

#include <algorithm>

namespace orivex::gtk {

HostWindow* GtkApplicationPort::find(GtkWindow* window) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [&](const auto& candidate) { return candidate->gtkWindow() == window; });
  return found == windows_.end() ? nullptr : found->get();
}

HostWindow* GtkApplicationPort::find(const View& view) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(), [shown = view.window()](const auto& candidate) {
    return shown && candidate->window().get() == shown;
  });
  return found == windows_.end() ? nullptr : found->get();
}

HostWindow& GtkApplicationPort::attach(GtkWindow* window, const Surroundings& surroundings) {
  if (auto* const known = find(window)) return *known;
  windows_.push_back(std::make_unique<HostWindow>(
      window, surroundings, [this, window] { activityChanged(window); }, [this, window] { forget(window); }));
  activityChanged(window);
  return *find(window);
}

HostWindow* GtkApplicationPort::frontWindow() const {
  return windows_.empty() ? nullptr : windows_.front().get();
}

std::vector<std::shared_ptr<WindowScene>> GtkApplicationPort::connectedScenes() const {
  std::vector<std::shared_ptr<WindowScene>> scenes;
  for (const auto& window : windows_) scenes.push_back(window->scene());
  return scenes;
}

Subscription GtkApplicationPort::observe(ApplicationEvent event, std::function<void()> handler) {
  auto& observers = event == ApplicationEvent::didBecomeActive ? becameActive_ : willResignActive_;
  return observers.add(std::move(handler));
}

void GtkApplicationPort::activityChanged(GtkWindow* window) {
  const auto changed = std::find_if(windows_.begin(), windows_.end(),
                                    [&](const auto& candidate) { return candidate->gtkWindow() == window; });
  if (changed != windows_.end() && (*changed)->isActive()) std::rotate(windows_.begin(), changed, changed + 1);
  // The focus passes from one of our windows to another in two steps; only where it ends counts.
  mainQueue_.async(alive_.guard([this] { settleActivity(); }));
}

void GtkApplicationPort::settleActivity() {
  const bool active = !session_.isAway() && std::any_of(windows_.begin(), windows_.end(),
                                                        [](const auto& window) { return window->isActive(); });
  if (std::exchange(active_, active) == active) return;
  (active ? becameActive_ : willResignActive_).notify();
}

void GtkApplicationPort::forget(GtkWindow* window) {
  const auto gone = std::find_if(windows_.begin(), windows_.end(),
                                 [&](const auto& candidate) { return candidate->gtkWindow() == window; });
  if (gone == windows_.end()) return;
  const auto kept = std::move(*gone);  // its screens may ask for windows while they end
  windows_.erase(gone);
  mainQueue_.async(alive_.guard([this] { settleActivity(); }));
}

}  // namespace orivex::gtk
