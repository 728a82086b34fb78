#include "HostWindow.h"

#include <algorithm>

#include <adwaita.h>
#include <webkit/webkit.h>

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

constexpr guint backButton = 8;  // as display servers number the buttons of a mouse

bool leadsBack(guint key, GdkModifierType modifiers) {
  const auto held = modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SHIFT_MASK | GDK_SUPER_MASK);
  if (key == GDK_KEY_Left || key == GDK_KEY_KP_Left) return held == GDK_ALT_MASK;
  return held == 0 && (key == GDK_KEY_Escape || key == GDK_KEY_Back);
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
    focus_->updateLater();
  });
  gtk_overlay_set_child(overlay_.get(), root_->widget());
  focus_ = std::make_unique<FocusKeeper>(window, root_->widget(), mainQueue);
  window_->setEndEditingHandler([this](const View& /*view*/) { focus_->clear(); });
  connectBackInput(root_->widget());
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
  scene_->setStatusBarHeight(surroundings.statusBarHeight);
  window_->contentView()->layOut();
}

// What a visitor without a finger goes back with: Escape, Alt and the arrow to the left, the back key, and the mouse's
// back button. What leads nowhere stays for the host. A page sees the keys first and hands on by the action what it
// does not take; see `addBackKeys`.
void HostWindow::connectBackInput(GtkWidget* screens) {
  const auto group = GRef<GSimpleActionGroup>::adopt(g_simple_action_group_new());
  const auto action = GRef<GSimpleAction>::adopt(g_simple_action_new("back", nullptr));
  connections_.add(action.get(), "activate", [this] { window_->goBack(); });
  g_action_map_add_action(G_ACTION_MAP(group.get()), G_ACTION(action.get()));
  gtk_widget_insert_action_group(screens, "screens", G_ACTION_GROUP(group.get()));

  auto* const keys = gtk_event_controller_key_new();
  gtk_widget_add_controller(screens, keys);
  connections_.add(keys, "key-pressed", [this](guint key, guint /*code*/, GdkModifierType modifiers) {
    return !isFocusInPage() && leadsBack(key, modifiers) && window_->goBack();
  });
  auto* const click = gtk_gesture_click_new();
  gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(click), backButton);
  // A page is not told of this button, but would keep it from us.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(screens, GTK_EVENT_CONTROLLER(click));
  connections_.add(click, "pressed", [this, click] {
    if (window_->goBack()) gtk_gesture_set_state(click, GTK_EVENT_SEQUENCE_CLAIMED);
  });
}

bool HostWindow::isFocusInPage() const {
  auto* const focus = gtk_window_get_focus(gtkWindow_);
  return focus && (WEBKIT_IS_WEB_VIEW(focus) || gtk_widget_get_ancestor(focus, WEBKIT_TYPE_WEB_VIEW));
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

std::shared_ptr<ViewController> screenFor(GtkWidget* widget) {
  return std::make_shared<WidgetScreen>(GRef<GtkWidget>::sink(widget));
}

std::shared_ptr<View> viewFor(GtkWidget* widget) {
  return std::make_shared<WidgetView>(GRef<GtkWidget>::sink(widget));
}

}  // namespace orivex::gtk
