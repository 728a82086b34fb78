#include "BackInput.h"

#include <utility>

#include <webkit/webkit.h>

#include "../glib/GRef.h"

namespace orivex::gtk {
namespace {

constexpr guint backButton = 8;  // as display servers number the buttons of a mouse

bool leadsBack(guint key, GdkModifierType modifiers) {
  const auto held = modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SHIFT_MASK | GDK_SUPER_MASK);
  if (key == GDK_KEY_Left || key == GDK_KEY_KP_Left) return held == GDK_ALT_MASK;
  return held == 0 && (key == GDK_KEY_Escape || key == GDK_KEY_Back);
}

}  // namespace

BackInput::BackInput(GtkWidget* screens, std::function<bool()> goBack) : screens_(screens), goBack_(std::move(goBack)) {
  const auto group = GRef<GSimpleActionGroup>::adopt(g_simple_action_group_new());
  const auto action = GRef<GSimpleAction>::adopt(g_simple_action_new("back", nullptr));
  connections_.add(action.get(), "activate", [this] { goBack_(); });
  g_action_map_add_action(G_ACTION_MAP(group.get()), G_ACTION(action.get()));
  gtk_widget_insert_action_group(screens, "screens", G_ACTION_GROUP(group.get()));

  auto* const keys = gtk_event_controller_key_new();
  gtk_widget_add_controller(screens, keys);
  connections_.add(keys, "key-pressed", [this](guint key, guint /*code*/, GdkModifierType modifiers) {
    return !isInPage() && leadsBack(key, modifiers) && goBack_();
  });
  auto* const click = gtk_gesture_click_new();
  gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(click), backButton);
  // A page is not told of this button, but would keep it from us.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(screens, GTK_EVENT_CONTROLLER(click));
  connections_.add(click, "pressed", [this, click] {
    if (goBack_()) gtk_gesture_set_state(click, GTK_EVENT_SEQUENCE_CLAIMED);
  });
}

bool BackInput::isInPage() const {
  auto* const root = gtk_widget_get_root(screens_);
  auto* const focus = root ? gtk_root_get_focus(root) : nullptr;
  return focus && (WEBKIT_IS_WEB_VIEW(focus) || gtk_widget_get_ancestor(focus, WEBKIT_TYPE_WEB_VIEW));
}

}  // namespace orivex::gtk
