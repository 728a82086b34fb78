#include "HostWindow.h"

#include <algorithm>

#include <adwaita.h>

#include "HostViews.h"
#include "TitleBar.h"

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

HostWindow::HostWindow(GtkWindow* window, const Surroundings& surroundings, MainQueue& mainQueue,
                       std::function<void()> closed)
    : gtkWindow_(window),
      overlay_(GRef<GtkOverlay>::sink(GTK_OVERLAY(gtk_overlay_new()))),
      content_(std::make_shared<WidgetScreen>(contentOf(window))) {
  scene_->addWindow(window_);
  setSurroundings(surroundings);
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(window, &width, &height);
  window_->setSize({static_cast<double>(std::max(width, 0)), static_cast<double>(std::max(height, 0))});
  // Only these windows leave their title bar to their content.
  if (isAdwaita(window)) window_->setTitleBarHeight([this] { return titleBarHeight(root_->widget()); });

  root_ = std::make_unique<ViewNode>(*window_->contentView(), nullptr);
  root_->setResizeHandler([this](int newWidth, int newHeight) {
    window_->setSize({static_cast<double>(newWidth), static_cast<double>(newHeight)});
    focus_->settleLater();
  });
  gtk_overlay_set_child(overlay_.get(), root_->widget());
  focus_ = std::make_unique<FocusKeeper>(window, root_->widget(), mainQueue);
  window_->setEndEditingHandler([this](const View& /*view*/) { focus_->rest(); });
  backInput_ = std::make_unique<BackInput>(root_->widget(), [this] { return window_->goBack(); });
  g_object_set(window, contentProperty(window), overlay_.get(), nullptr);
  window_->setRootViewController(content_);
  connections_.add(window, isAdwaita(window) ? "notify::content" : "notify::child", [this] { contentChanged(); });
  connections_.add(window, "destroy", [closed = std::move(closed)] { closed(); });
}

HostWindow::~HostWindow() {
  connections_.disconnect();
  window_->setEndEditingHandler(nullptr);
  window_->setTitleBarHeight(nullptr);
  // The screens end before the widgets that show them.
  window_->setRootViewController(nullptr);
  gtk_overlay_set_child(overlay_.get(), nullptr);
  scene_->removeWindow(*window_);
}

void HostWindow::setSurroundings(const Surroundings& surroundings) {
  window_->setSafeAreaInsets(surroundings.safeAreaInsets);
  scene_->setStatusBarManager(StatusBarManager{{0, 0, window_->bounds().width, surroundings.statusBarHeight}});
  window_->contentView()->layOut();
}

// A host that has put our widget into one of its own, or taken it out to do so, shows the screens itself. Another
// widget is the root screen's new content, whatever lies over that.
void HostWindow::contentChanged() {
  auto next = contentOf(gtkWindow_);
  auto* const ours = GTK_WIDGET(overlay_.get());
  if (!next || next.get() == ours || gtk_widget_is_ancestor(ours, next.get())) return;
  g_object_set(gtkWindow_, contentProperty(gtkWindow_), ours, nullptr);
  if (window_->rootViewController() == content_) {
    content_->setWidget(std::move(next));
  } else {
    content_ = std::make_shared<WidgetScreen>(std::move(next));
    window_->setRootViewController(content_);
  }
}

}  // namespace orivex::gtk

namespace orivex {

std::shared_ptr<ViewController> gtk::screenFor(GtkWidget* widget) {
  return std::make_shared<WidgetScreen>(GRef<GtkWidget>::sink(widget));
}

std::shared_ptr<View> gtk::viewFor(GtkWidget* widget) {
  return std::make_shared<WidgetView>(GRef<GtkWidget>::sink(widget));
}

}  // namespace orivex
