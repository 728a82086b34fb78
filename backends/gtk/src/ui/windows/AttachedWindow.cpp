#include "AttachedWindow.h"

#include <algorithm>

#include <adwaita.h>

#include "../TitleBar.h"

namespace orivex::gtk {
namespace {

bool isAdwaita(GtkWindow* window) {
  return ADW_IS_APPLICATION_WINDOW(window) || ADW_IS_WINDOW(window);
}

// The property in which this kind of window holds its content.
const char* contentProperty(GtkWindow* window) {
  return isAdwaita(window) ? "content" : "child";
}

GRef<GtkWidget> contentOf(GtkWindow* window) {
  GtkWidget* content = nullptr;
  g_object_get(window, contentProperty(window), &content, nullptr);
  return GRef<GtkWidget>::adopt(content);
}

}  // namespace

AttachedWindow::AttachedWindow(GtkWindow* window, const Surroundings& surroundings, MainQueue& mainQueue,
                               std::function<void(const HostWindow&)> ended)
    : HostWindow(GTK_OVERLAY(gtk_overlay_new()), mainQueue, std::move(ended)),
      kept_(GRef<GtkOverlay>::sink(overlay())),
      content_(std::make_shared<WidgetScreen>(contentOf(window))) {
  setSurroundings(surroundings);
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(window, &width, &height);
  HostWindow::window()->setSize({static_cast<double>(std::max(width, 0)), static_cast<double>(std::max(height, 0))});
  // Only these windows leave their title bar to their content.
  if (isAdwaita(window)) HostWindow::window()->setTitleBarHeight([this] { return titleBarHeight(screens()); });
  setGtkWindow(window);
  g_object_set(window, contentProperty(window), overlay(), nullptr);
  HostWindow::window()->setRootViewController(content_);
  connections_.add(window, isAdwaita(window) ? "notify::content" : "notify::child", [this] { contentChanged(); });
  connections_.add(window, "destroy", [this] { end(); });
}

AttachedWindow::~AttachedWindow() {
  connections_.disconnect();
  window()->setTitleBarHeight(nullptr);
  clear();
}

void AttachedWindow::setSurroundings(const Surroundings& surroundings) {
  window()->setSafeAreaInsets(surroundings.safeAreaInsets);
  scene()->setStatusBarHeight(surroundings.statusBarHeight);
  window()->contentView()->layOut();
}

// A host that has put our widget into one of its own, or taken it out to do so, shows the screens itself. Another
// widget is the root screen's new content, whatever lies over that.
void AttachedWindow::contentChanged() {
  auto next = contentOf(gtkWindow());
  auto* const ours = GTK_WIDGET(overlay());
  if (!next || next.get() == ours || gtk_widget_is_ancestor(ours, next.get())) return;
  g_object_set(gtkWindow(), contentProperty(gtkWindow()), ours, nullptr);
  if (window()->rootViewController() == content_) {
    content_->setWidget(std::move(next));
  } else {
    content_ = std::make_shared<WidgetScreen>(std::move(next));
    window()->setRootViewController(content_);
  }
}

}  // namespace orivex::gtk
