#include <utility>

#include "Chat.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/sdk/OVKFApi.h"

struct _OrivexChatView {
  GtkWidget parent;
  OrivexChat* chat;
  GtkWidget* screen;
  // Of one that was pushed on a stack: what it covers there, and whether its chat has been closed.
  GtkWidget* before;
  bool leavesStack;
};

G_DEFINE_FINAL_TYPE(OrivexChatView, orivex_chat_view, GTK_TYPE_WIDGET)

namespace {

enum Property { chatProperty = 1 };

// At once: an animation may refer to the widget for a while.
void removeScreen(OrivexChatView* self) {
  auto* const screen = std::exchange(self->screen, nullptr);
  if (!screen) return;
  g_object_ref(screen);
  gtk_widget_unparent(screen);
  g_object_run_dispose(G_OBJECT(screen));
  g_object_unref(screen);
}

}  // namespace

static void orivex_chat_view_get_property(GObject* object, guint id, GValue* value, GParamSpec* spec) {
  if (id != chatProperty) {
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
    return;
  }
  g_value_set_object(value, ORIVEX_CHAT_VIEW(object)->chat);
}

static void orivex_chat_view_set_property(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
  if (id != chatProperty) {
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
    return;
  }
  orivex_chat_view_set_chat(ORIVEX_CHAT_VIEW(object), static_cast<OrivexChat*>(g_value_get_object(value)));
}

static void orivex_chat_view_dispose(GObject* object) {
  auto* const self = ORIVEX_CHAT_VIEW(object);
  removeScreen(self);
  g_clear_object(&self->chat);
  g_clear_weak_pointer(&self->before);
  G_OBJECT_CLASS(orivex_chat_view_parent_class)->dispose(object);
}

static void orivex_chat_view_class_init(OrivexChatViewClass* type) {
  auto* const object = G_OBJECT_CLASS(type);
  object->get_property = orivex_chat_view_get_property;
  object->set_property = orivex_chat_view_set_property;
  object->dispose = orivex_chat_view_dispose;
  g_object_class_install_property(
      object, chatProperty,
      g_param_spec_object("chat", nullptr, "The chat that shows", ORIVEX_TYPE_CHAT,
                          GParamFlags(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | G_PARAM_EXPLICIT_NOTIFY)));
  gtk_widget_class_set_layout_manager_type(GTK_WIDGET_CLASS(type), GTK_TYPE_BIN_LAYOUT);
}

static void orivex_chat_view_init(OrivexChatView* /*self*/) {}

/**
 * orivex_chat_view_new:
 * @chat: (nullable): the chat that shows
 *
 * Makes a view and starts a session of @chat for it.
 *
 * Returns: a view
 */
GtkWidget* orivex_chat_view_new(OrivexChat* chat) {
  return GTK_WIDGET(g_object_new(ORIVEX_TYPE_CHAT_VIEW, "chat", chat, nullptr));
}

/**
 * orivex_chat_view_get_chat:
 * @self: a view
 *
 * The chat that shows.
 *
 * Returns: (nullable) (transfer none): a chat
 */
OrivexChat* orivex_chat_view_get_chat(OrivexChatView* self) {
  g_return_val_if_fail(ORIVEX_IS_CHAT_VIEW(self), nullptr);
  return self->chat;
}

/**
 * orivex_chat_view_set_chat:
 * @self: a view
 * @chat: (nullable): the chat that shows
 *
 * Ends the session of the chat that shows and starts one of @chat; the view stays empty if that shows elsewhere. As
 * for [method@Chat.present], the GApplication is made before, if there is one.
 */
void orivex_chat_view_set_chat(OrivexChatView* self, OrivexChat* chat) {
  g_return_if_fail(ORIVEX_IS_CHAT_VIEW(self) && (!chat || ORIVEX_IS_CHAT(chat)));
  if (!g_set_object(&self->chat, chat)) return;
  removeScreen(self);
  if (const auto screen = chat ? orivex::glib::startScreen(chat) : nullptr) {
    self->screen = orivex::gtk::widgetFor(screen);
    gtk_widget_set_parent(self->screen, GTK_WIDGET(self));
  }
  g_object_notify(G_OBJECT(self), "chat");
}

namespace {

void slide(GtkStack* stack, GtkWidget* to, GtkStackTransitionType direction) {
  const auto usual = gtk_stack_get_transition_type(stack);
  gtk_stack_set_transition_type(stack, direction);
  gtk_stack_set_visible_child(stack, to);
  gtk_stack_set_transition_type(stack, usual);
}

// The view of the chat that was pushed there; null without one, or with one that slides out.
GtkWidget* pushedView(GtkStack* stack, OrivexChat* chat) {
  for (auto* child = gtk_widget_get_first_child(GTK_WIDGET(stack)); child; child = gtk_widget_get_next_sibling(child)) {
    if (!ORIVEX_IS_CHAT_VIEW(child)) continue;
    const auto* const view = ORIVEX_CHAT_VIEW(child);
    if (view->chat == chat && view->screen && !view->leavesStack) return child;
  }
  return nullptr;
}

// Once it is out of sight.
void removeView(GtkStack* stack, GParamSpec* /*spec*/, GtkWidget* view) {
  if (gtk_stack_get_transition_running(stack)) return;
  g_signal_handlers_disconnect_by_func(stack, reinterpret_cast<gpointer>(removeView), view);
  if (gtk_widget_get_parent(view) == GTK_WIDGET(stack)) gtk_stack_remove(stack, view);
}

void pop(OrivexChat* chat, OrivexChatView* view) {
  g_signal_handlers_disconnect_by_func(chat, reinterpret_cast<gpointer>(pop), view);
  auto* const parent = gtk_widget_get_parent(GTK_WIDGET(view));
  if (!parent || !GTK_IS_STACK(parent)) return;
  auto* const stack = GTK_STACK(parent);
  view->leavesStack = true;
  const bool shows = gtk_stack_get_visible_child(stack) == GTK_WIDGET(view);
  if (shows && view->before && gtk_widget_get_parent(view->before) == parent) {
    slide(stack, view->before, GTK_STACK_TRANSITION_TYPE_SLIDE_RIGHT);
  }
  g_signal_connect_object(stack, "notify::transition-running", G_CALLBACK(removeView), view, GConnectFlags(0));
  removeView(stack, nullptr, GTK_WIDGET(view));
}

}  // namespace

/**
 * orivex_chat_push:
 * @self: a chat
 * @stack: a stack of the host
 *
 * Adds a [class@ChatView] to @stack and slides to it; when the chat is closed, slides back to what showed before and
 * takes the view away. A chat that is in @stack already comes to the front. Does nothing while it shows elsewhere.
 */
void orivex_chat_push(OrivexChat* self, GtkStack* stack) {
  g_return_if_fail(ORIVEX_IS_CHAT(self) && GTK_IS_STACK(stack));
  if (auto* const pushed = pushedView(stack, self)) return slide(stack, pushed, GTK_STACK_TRANSITION_TYPE_SLIDE_LEFT);
  auto* const view = ORIVEX_CHAT_VIEW(orivex_chat_view_new(self));
  if (!view->screen) {  // shows elsewhere
    g_object_unref(g_object_ref_sink(view));
    return;
  }
  g_set_weak_pointer(&view->before, gtk_stack_get_visible_child(stack));
  gtk_stack_add_child(stack, GTK_WIDGET(view));
  g_signal_connect_object(self, "closed", G_CALLBACK(pop), view, GConnectFlags(0));
  slide(stack, GTK_WIDGET(view), GTK_STACK_TRANSITION_TYPE_SLIDE_LEFT);
}
