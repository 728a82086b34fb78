#include "HostWindow.h"

#include "../../glib/GRef.h"
#include "../Widgets.h"

#include "orivex/platform/ui/ViewController.h"

namespace orivex::gtk {
namespace {

constexpr guint backButton = 8;  // as display servers number the buttons of a mouse

bool leadsBack(guint key, GdkModifierType modifiers) {
  const auto held = modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SHIFT_MASK | GDK_SUPER_MASK);
  if (key == GDK_KEY_Left || key == GDK_KEY_KP_Left) return held == GDK_ALT_MASK;
  return held == 0 && (key == GDK_KEY_Escape || key == GDK_KEY_Back);
}

// Whether nothing has come yet of what the view loads: its process may not even have begun to hear keys.
bool isStarting(WebKitWebView* page) {
  auto* const document = webkit_web_view_get_main_resource(page);
  return !document || !webkit_web_resource_get_response(document);
}

}  // namespace

HostWindow::HostWindow(GtkOverlay* overlay, MainQueue& mainQueue, std::function<void(const HostWindow&)> ended)
    : overlay_(overlay), mainQueue_(mainQueue), ended_(std::move(ended)) {
  scene_->addWindow(window_);
  root_ = std::make_unique<ViewNode>(*window_->contentView(), nullptr);
  root_->setResizeHandler([this](int newWidth, int newHeight) {
    window_->setSize({static_cast<double>(newWidth), static_cast<double>(newHeight)});
    if (focus_) focus_->updateLater();
  });
  gtk_overlay_set_child(overlay_, screens());
  window_->setEndEditingHandler([this](const View& /*view*/) {
    auto* const focus = focused();
    if (focus_ && (!focus || isInside(focus, GTK_WIDGET(overlay_)))) focus_->clear();
  });
  connectBackInput();
}

HostWindow::~HostWindow() = default;

void HostWindow::end() {
  const auto ended = ended_;
  ended(*this);
}

void HostWindow::clear() {
  connections_.disconnect();
  window_->setEndEditingHandler(nullptr);
  // The screens end before the widgets that show them.
  window_->setRootViewController(nullptr);
  gtk_overlay_set_child(overlay_, nullptr);
  scene_->removeWindow(*window_);
}

void HostWindow::setGtkWindow(GtkWindow* window) {
  gtkWindow_ = window;
  focus_ = window ? std::make_unique<FocusKeeper>(window, screens(), mainQueue_) : nullptr;
  keys_ = window ? std::make_unique<HeldKeys>(GTK_WIDGET(window), HeldKeys::Keys{}, HeldKeys::Repeats::pass) : nullptr;
}

const HeldKeys::Keys& HostWindow::heldKeys() const {
  static const HeldKeys::Keys none;
  return keys_ ? keys_->down() : none;
}

// What a visitor without a finger goes back with: Escape, Alt and the arrow to the left, the back key, and the mouse's
// back button. What leads nowhere stays for the host. A page sees the keys first and hands on by the action what it
// does not take; see `addBackKeys`. One that has not come takes none.
void HostWindow::connectBackInput() {
  const auto group = GRef<GSimpleActionGroup>::adopt(g_simple_action_group_new());
  const auto action = GRef<GSimpleAction>::adopt(g_simple_action_new("back", nullptr));
  connections_.add(action.get(), "activate", [this] { window_->goBack(); });
  g_action_map_add_action(G_ACTION_MAP(group.get()), G_ACTION(action.get()));
  gtk_widget_insert_action_group(screens(), "screens", G_ACTION_GROUP(group.get()));

  for (const auto phase : {GTK_PHASE_CAPTURE, GTK_PHASE_BUBBLE}) {
    auto* const keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, phase);
    gtk_widget_add_controller(screens(), keys);
    connections_.add(keys, "key-pressed", [this, phase](guint key, guint /*code*/, GdkModifierType modifiers) {
      auto* const page = focusedPage();
      const bool isOurs = phase == GTK_PHASE_CAPTURE ? page && isStarting(page) : !page;
      return isOurs && leadsBack(key, modifiers) && window_->goBack();
    });
  }
  auto* const click = gtk_gesture_click_new();
  gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(click), backButton);
  // A page is not told of this button, but would keep it from us.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(screens(), GTK_EVENT_CONTROLLER(click));
  connections_.add(click, "pressed", [this, click] {
    if (window_->goBack()) gtk_gesture_set_state(click, GTK_EVENT_SEQUENCE_CLAIMED);
  });
}

GtkWidget* HostWindow::focused() const {
  return gtkWindow_ ? gtk_window_get_focus(gtkWindow_) : nullptr;
}

WebKitWebView* HostWindow::focusedPage() const {
  auto* const focus = focused();
  auto* const page = focus ? gtk_widget_get_ancestor(focus, WEBKIT_TYPE_WEB_VIEW) : nullptr;
  return page ? WEBKIT_WEB_VIEW(page) : nullptr;
}

}  // namespace orivex::gtk
