#include "GtkApplicationPort.h"

#include <algorithm>

#include "../files/FileDialog.h"

namespace orivex::gtk {
namespace {

constexpr double focusPassing = 0.1;  // seconds that a display server takes at most

auto isIn(GtkWindow* window) {
  return [window](const std::unique_ptr<HostWindow>& host) { return host->gtkWindow() == window; };
}

auto is(const HostWindow& host) {
  return [&host](const std::unique_ptr<HostWindow>& candidate) { return candidate.get() == &host; };
}

// A widget that is in no window, or in one that the host has destroyed, shows none.
bool showsScreens(const std::unique_ptr<HostWindow>& host) {
  return host->window()->rootViewController() != nullptr;
}

}  // namespace

AttachedWindow* GtkApplicationPort::find(GtkWindow* window) const {
  for (const auto& host : windows_) {
    auto* const attached = dynamic_cast<AttachedWindow*>(host.get());
    if (attached && attached->gtkWindow() == window) return attached;
  }
  return nullptr;
}

HostWindow* GtkApplicationPort::find(const View& view) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(), [shown = view.window()](const auto& candidate) {
    return shown && candidate->window().get() == shown;
  });
  return found == windows_.end() ? nullptr : found->get();
}

AttachedWindow& GtkApplicationPort::attach(GtkWindow* window, const Surroundings& surroundings) {
  if (auto* const known = find(window)) return *known;
  watchToplevels();
  auto attached = std::make_unique<AttachedWindow>(window, surroundings, mainQueue_,
                                                   [this](const HostWindow& host) { forget(host); });
  auto& result = *attached;
  windows_.insert(std::find_if(windows_.begin(), windows_.end(), isIn(window)), std::move(attached));
  activityChanged(window);
  return result;
}

GtkWidget* GtkApplicationPort::embed(std::shared_ptr<ViewController> screen) {
  watchToplevels();
  windows_.push_back(std::make_unique<EmbeddedScreen>(
      std::move(screen), mainQueue_, [this](GtkWindow* window) { activityChanged(window); },
      [this](const HostWindow& host) { forget(host); }));
  return GTK_WIDGET(windows_.back()->overlay());
}

void GtkApplicationPort::watchToplevels() {
  if (toplevels_) return;
  toplevels_ = GRef<GListModel>::share(gtk_window_get_toplevels());
  toplevelsChanged_ = SignalConnection::connect(toplevels_.get(), "items-changed", [this] { toplevelsChanged(); });
  toplevelsChanged();
}

void GtkApplicationPort::toplevelsChanged() {
  activity_.disconnect();
  for (guint index = 0; index < g_list_model_get_n_items(toplevels_.get()); ++index) {
    const auto owned = GRef<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(toplevels_.get(), index)));
    activity_.add(owned.get(), "notify::is-active", [this, window = owned.get()] { activityChanged(window); });
  }
  mainQueue_.async(alive_.guard([this] { forgetDestroyed(); }));
  updateActivitySoon();
}

// A window that the host has destroyed but still refers to, as languages with a garbage collector do, is not disposed
// of yet.
void GtkApplicationPort::forgetDestroyed() {
  std::vector<HostWindow*> destroyed;
  for (const auto& host : windows_) {
    auto* const window = host->gtkWindow();
    if (window && !g_list_store_find(G_LIST_STORE(toplevels_.get()), window, nullptr)) destroyed.push_back(host.get());
  }
  for (auto* const host : destroyed) {
    if (std::any_of(windows_.begin(), windows_.end(), is(*host))) host->windowDestroyed();  // one may end another
  }
}

// The focus passes from one window to another in two steps; only where it ends counts.
void GtkApplicationPort::updateActivitySoon() {
  auto update = alive_.guard([this] { updateActivity(); });
  if (hasActiveWindow()) {
    mainQueue_.async(std::move(update));
  } else {
    mainQueue_.asyncAfter(focusPassing, std::move(update));
  }
}

// A dialog of ours, even one that the desktop shows, or a window without screens is still the application that the
// visitor is at.
bool GtkApplicationPort::hasActiveWindow() const {
  if (FileDialog::isAnyOpen()) return true;
  for (guint index = 0; toplevels_ && index < g_list_model_get_n_items(toplevels_.get()); ++index) {
    const auto window = GRef<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(toplevels_.get(), index)));
    if (gtk_window_is_active(window.get())) return true;
  }
  return false;
}

HostWindow* GtkApplicationPort::frontWindow() const {
  const auto front = std::find_if(windows_.begin(), windows_.end(), showsScreens);
  return front == windows_.end() ? nullptr : front->get();
}

std::vector<std::shared_ptr<WindowScene>> GtkApplicationPort::connectedScenes() const {
  std::vector<std::shared_ptr<WindowScene>> scenes;
  for (const auto& host : windows_) {
    if (showsScreens(host)) scenes.push_back(host->scene());
  }
  return scenes;
}

Subscription GtkApplicationPort::observe(ApplicationEvent event, std::function<void()> handler) {
  auto& observers = event == ApplicationEvent::didBecomeActive ? becameActive_ : willResignActive_;
  return observers.add(std::move(handler));
}

void GtkApplicationPort::activityChanged(GtkWindow* window) {
  if (gtk_window_is_active(window)) std::stable_partition(windows_.begin(), windows_.end(), isIn(window));
  updateActivitySoon();
}

void GtkApplicationPort::updateActivity() {
  const bool active = !session_.isAway() && hasActiveWindow();
  if (std::exchange(active_, active) == active) return;
  (active ? becameActive_ : willResignActive_).notify();
}

void GtkApplicationPort::forget(const HostWindow& host) {
  const auto gone = std::find_if(windows_.begin(), windows_.end(), is(host));
  if (gone == windows_.end()) return;
  const auto kept = std::move(*gone);  // its screens may ask for windows while they end
  windows_.erase(gone);
  updateActivitySoon();
}

}  // namespace orivex::gtk
