#include "HostWindow.h"

#include <adwaita.h>

#include "HostViews.h"

namespace orivex::gtk {
namespace {

/// A screen whose view shows a widget of the host.
class WidgetScreen final : public ViewController {
 public:
  explicit WidgetScreen(GRef<GtkWidget> widget) : widget_(std::move(widget)) {}

 protected:
  std::shared_ptr<View> makeView(const Rect& frame) override {
    auto view = std::make_shared<WidgetView>(std::move(widget_));
    view->setFrame(frame);
    return view;
  }

 private:
  GRef<GtkWidget> widget_;
};

// What the window holds, in whichever way its kind holds it, replaced by `next`.
GRef<GtkWidget> exchangeContent(GtkWindow* window, GtkWidget* next) {
  GRef<GtkWidget> old;
  if (ADW_IS_APPLICATION_WINDOW(window)) {
    auto* const adw = ADW_APPLICATION_WINDOW(window);
    old = GRef<GtkWidget>::share(adw_application_window_get_content(adw));
    adw_application_window_set_content(adw, next);
  } else if (ADW_IS_WINDOW(window)) {
    old = GRef<GtkWidget>::share(adw_window_get_content(ADW_WINDOW(window)));
    adw_window_set_content(ADW_WINDOW(window), next);
  } else {
    old = GRef<GtkWidget>::share(gtk_window_get_child(window));
    gtk_window_set_child(window, next);
  }
  return old;
}

}  // namespace

HostWindow::HostWindow(GtkWindow* window, const Surroundings& surroundings, std::function<void()> activityChanged,
                       std::function<void()> closed)
    : gtkWindow_(window), activityChanged_(std::move(activityChanged)), closed_(std::move(closed)) {
  scene_->addWindow(window_);
  setSurroundings(surroundings);
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(window, &width, &height);
  window_->setSize({static_cast<double>(std::max(width, 0)), static_cast<double>(std::max(height, 0))});
  window_->setEndEditingHandler([window](const View& /*view*/) { gtk_window_set_focus(window, nullptr); });

  root_ = std::make_unique<ViewNode>(*window_->contentView(), nullptr);
  root_->setResizeHandler([this](int newWidth, int newHeight) {
    window_->setSize({static_cast<double>(newWidth), static_cast<double>(newHeight)});
  });
  overlay_ = GTK_OVERLAY(gtk_overlay_new());
  gtk_overlay_set_child(overlay_, root_->widget());
  auto content = exchangeContent(window, GTK_WIDGET(overlay_));
  window_->setRootViewController(content ? std::make_shared<WidgetScreen>(std::move(content))
                                         : std::make_shared<ViewController>());
  active_ = SignalConnection::connect<&HostWindow::activeChanged>(window, "notify::is-active", this);
  destroy_ = SignalConnection::connect<&HostWindow::destroyed>(window, "destroy", this);
}

HostWindow::~HostWindow() {
  active_.disconnect();
  destroy_.disconnect();
  // The screens end before the widgets that show them.
  window_->setRootViewController(nullptr);
  scene_->removeWindow(*window_);
}

void HostWindow::setSurroundings(const Surroundings& surroundings) {
  window_->setSafeAreaInsets(surroundings.safeAreaInsets);
  scene_->setStatusBarManager(StatusBarManager{{0, 0, window_->bounds().width, surroundings.statusBarHeight}});
  window_->contentView()->layOut();
}

void HostWindow::activeChanged(GtkWindow* /*window*/, GParamSpec* /*property*/) {
  activityChanged_();
}

void HostWindow::destroyed(GtkWidget* /*window*/) {
  const auto closed = closed_;
  closed();
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
