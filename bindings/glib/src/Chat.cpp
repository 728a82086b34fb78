#include "Chat.h"

#include <memory>
#include <string>

#include "ChatEvents.h"
#include "Visitor.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/sdk/OrivexSDK.h"

GQuark orivex_error_quark(void) {
  return g_quark_from_static_string("orivex-error-quark");
}

namespace {

using orivex::OVKFApi;

struct Chat {
  std::string host;
  std::string entryId;
  std::string appKey;
  OrivexVisitor* visitor = nullptr;
  bool debug = false;
  bool conversationEvents = false;
  char** allowedOrigins = nullptr;
  std::weak_ptr<OVKFApi> screen{};  // the last one, while it lives; a new one for each presentation
};

}  // namespace

struct _OrivexChat {
  GObject parent;
  Chat* chat;
};

G_DEFINE_FINAL_TYPE(OrivexChat, orivex_chat, G_TYPE_OBJECT)

namespace {

enum Property {
  hostProperty = 1,
  entryProperty,
  keyProperty,
  visitorProperty,
  debugProperty,
  eventsProperty,
  originsProperty,
  openProperty
};

// The screen while it shows, or null.
std::shared_ptr<OVKFApi> openScreen(const Chat& chat) {
  auto screen = chat.screen.lock();
  return screen && screen->isViewInWindow() ? screen : nullptr;
}

// As the signals tell: a screen in a view stays where it is when it is closed.
bool isOpen(const Chat& chat) {
  const auto screen = chat.screen.lock();
  return screen && std::static_pointer_cast<orivex::glib::ChatEvents>(screen->conversionDelegate)->isOpen();
}

std::string textOf(const GValue* value) {
  const char* const text = g_value_get_string(value);
  return text ? text : "";
}

}  // namespace

std::shared_ptr<OVKFApi> orivex::glib::startScreen(OrivexChat* self) {
  auto& chat = *self->chat;
  if (openScreen(chat)) return nullptr;
  orivex::gtk::install();
  auto screen = std::make_shared<OVKFApi>();
  screen->conversionDelegate = std::make_shared<orivex::glib::ChatEvents>(self);
  screen->debug = chat.debug;
  screen->conversationEvents = chat.conversationEvents;
  for (auto** origin = chat.allowedOrigins; origin && *origin; ++origin) screen->allowedOrigins.emplace_back(*origin);
  screen->startSession(chat.host, chat.entryId, chat.appKey, orivex::glib::recordOf(chat.visitor));
  chat.screen = screen;
  return screen;
}

static void orivex_chat_get_property(GObject* object, guint id, GValue* value, GParamSpec* spec) {
  const auto& chat = *ORIVEX_CHAT(object)->chat;
  switch (id) {
    case hostProperty:
      return g_value_set_string(value, chat.host.c_str());
    case entryProperty:
      return g_value_set_string(value, chat.entryId.c_str());
    case keyProperty:
      return g_value_set_string(value, chat.appKey.c_str());
    case visitorProperty:
      return g_value_set_object(value, chat.visitor);
    case debugProperty:
      return g_value_set_boolean(value, chat.debug);
    case eventsProperty:
      return g_value_set_boolean(value, chat.conversationEvents);
    case originsProperty:
      return g_value_set_boxed(value, chat.allowedOrigins);
    case openProperty:
      return g_value_set_boolean(value, isOpen(chat));
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
  }
}

static void orivex_chat_set_property(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
  auto& chat = *ORIVEX_CHAT(object)->chat;
  switch (id) {
    case hostProperty:
      chat.host = textOf(value);
      break;
    case entryProperty:
      chat.entryId = textOf(value);
      break;
    case keyProperty:
      chat.appKey = textOf(value);
      break;
    case visitorProperty:
      g_set_object(&chat.visitor, ORIVEX_VISITOR(g_value_get_object(value)));
      break;
    case debugProperty:
      chat.debug = g_value_get_boolean(value) != FALSE;
      break;
    case eventsProperty:
      chat.conversationEvents = g_value_get_boolean(value) != FALSE;
      break;
    case originsProperty:
      g_strfreev(chat.allowedOrigins);
      chat.allowedOrigins = static_cast<char**>(g_value_dup_boxed(value));
      break;
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
  }
}

static void orivex_chat_finalize(GObject* object) {
  auto* const chat = ORIVEX_CHAT(object)->chat;
  g_clear_object(&chat->visitor);
  g_strfreev(chat->allowedOrigins);
  delete chat;
  G_OBJECT_CLASS(orivex_chat_parent_class)->finalize(object);
}

static void orivex_chat_class_init(OrivexChatClass* type) {
  auto* const object = G_OBJECT_CLASS(type);
  object->get_property = orivex_chat_get_property;
  object->set_property = orivex_chat_set_property;
  object->finalize = orivex_chat_finalize;
  const auto flags = GParamFlags(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
  const auto text = [=](const char* name, const char* blurb) {
    return g_param_spec_string(name, nullptr, blurb, nullptr, flags);
  };
  const auto isSet = [](const char* name, const char* blurb, GParamFlags access) {
    return g_param_spec_boolean(name, nullptr, blurb, FALSE, access);
  };
  g_object_class_install_property(object, hostProperty,
                                  text("host", "Address of the chat server, without a trailing slash"));
  g_object_class_install_property(object, entryProperty, text("entry-id", "Where the visitor enters the chat"));
  g_object_class_install_property(object, keyProperty, text("app-key", "The server's key of the host application"));
  g_object_class_install_property(
      object, visitorProperty,
      g_param_spec_object("visitor", nullptr, "Who the visitor is", ORIVEX_TYPE_VISITOR, flags));
  g_object_class_install_property(object, debugProperty, isSet("debug", "Whether the page is in debug mode", flags));
  g_object_class_install_property(
      object, eventsProperty,
      isSet("conversation-events", "Whether the page may tell of short cuts, messages and unread ones", flags));
  g_object_class_install_property(
      object, originsProperty,
      g_param_spec_boxed("allowed-origins", nullptr,
                         "Origins beside the chat's own whose documents are served as the chat page is", G_TYPE_STRV,
                         flags));
  g_object_class_install_property(
      object, openProperty,
      isSet("is-open", "Whether the screen shows", GParamFlags(G_PARAM_READABLE | G_PARAM_STATIC_STRINGS)));
  orivex::glib::addSignals(type);
}

static void orivex_chat_init(OrivexChat* self) {
  self->chat = new Chat;
}

/**
 * orivex_chat_new:
 * @host: address of the chat server, without a trailing slash
 * @entry_id: where the visitor enters the chat
 * @app_key: the server's key of the host application
 * @visitor: (nullable): who the visitor is
 *
 * Makes a chat that does not show yet.
 *
 * Returns: (transfer full): a chat
 */
OrivexChat* orivex_chat_new(const char* host, const char* entry_id, const char* app_key, OrivexVisitor* visitor) {
  return ORIVEX_CHAT(g_object_new(ORIVEX_TYPE_CHAT, "host", host, "entry-id", entry_id, "app-key", app_key, "visitor",
                                  visitor, nullptr));
}

/**
 * orivex_chat_present:
 * @self: a chat
 * @window: a window of the host, on the screen
 *
 * Starts a session and shows it over the whole of @window, whose content stays as it is. Does nothing while the chat
 * shows. Call it for the first time after the GApplication was made, if there is one: what is kept of a visitor is kept
 * under its identifier.
 */
void orivex_chat_present(OrivexChat* self, GtkWindow* window) {
  g_return_if_fail(ORIVEX_IS_CHAT(self) && GTK_IS_WINDOW(window));
  if (openScreen(*self->chat)) return;
  orivex::gtk::install();
  const auto shown = orivex::gtk::attach(window);
  shown->rootViewController()->present(orivex::glib::startScreen(self), true);
}

/**
 * orivex_chat_close:
 * @self: a chat
 *
 * Sends the screen away; one in a [class@ChatView] stays there and only tells that it is closed. Does nothing while it
 * does not show.
 */
void orivex_chat_close(OrivexChat* self) {
  g_return_if_fail(ORIVEX_IS_CHAT(self));
  if (const auto screen = openScreen(*self->chat)) screen->close();
}

/**
 * orivex_chat_queue_card:
 * @self: a chat
 * @type: type of the message, a code of the page's
 * @json: the card, a JSON object
 * @error: return location for an error of the domain %ORIVEX_ERROR
 *
 * Hands a card to the page: to the one that shows, or else to the next one, which gets the last of several.
 *
 * Returns: whether @json is a card
 */
gboolean orivex_chat_queue_card(OrivexChat* self, gint64 type, const char* json, GError** error) {
  g_return_val_if_fail(ORIVEX_IS_CHAT(self) && json, FALSE);
  orivex::gtk::install();
  try {
    const auto body = std::make_shared<orivex::MessageBody>(orivex::MessageBody::fromJsonString(json));
    if (const auto screen = openScreen(*self->chat)) {
      screen->showMessage(type, body);
    } else {
      OVKFApi().sendMessage(type, body);
    }
    return TRUE;
  } catch (const std::exception& fault) {
    g_set_error_literal(error, ORIVEX_ERROR, ORIVEX_ERROR_BAD_CARD, fault.what());
    return FALSE;
  }
}

/**
 * orivex_chat_sign_out_async:
 * @self: a chat
 * @cancellable: (nullable): not used: what has begun goes on
 * @callback: (scope async): called when it is done
 * @user_data: data for @callback
 *
 * Forgets the visitor: cookies, storage and caches of all chats of this process, queued cards, and who the guest is.
 * Close open chats before.
 */
void orivex_chat_sign_out_async(OrivexChat* self, GCancellable* cancellable, GAsyncReadyCallback callback,
                                gpointer user_data) {
  g_return_if_fail(ORIVEX_IS_CHAT(self));
  orivex::gtk::install();
  auto* const task = g_task_new(self, cancellable, callback, user_data);
  OVKFApi::signOut([task](const std::optional<std::string>& error) {
    if (error) {
      g_task_return_new_error(task, ORIVEX_ERROR, ORIVEX_ERROR_WEB_DATA, "%s", error->c_str());
    } else {
      g_task_return_boolean(task, TRUE);
    }
    g_object_unref(task);
  });
}

/**
 * orivex_chat_sign_out_finish:
 * @self: a chat
 * @result: what the callback was given
 * @error: return location for an error of the domain %ORIVEX_ERROR
 *
 * Ends [method@Chat.sign_out_async].
 *
 * Returns: whether everything could be removed
 */
gboolean orivex_chat_sign_out_finish(OrivexChat* self, GAsyncResult* result, GError** error) {
  g_return_val_if_fail(g_task_is_valid(result, self), FALSE);
  return g_task_propagate_boolean(G_TASK(result), error);
}

char* orivex_get_version(void) {
  orivex::gtk::install();
  return g_strdup(OVKFApi::getSDKVersion(true).c_str());
}

void orivex_set_language(const char* tag) {
  g_return_if_fail(tag != nullptr);
  orivex::gtk::install();
  orivex::setLanguage(tag);
}
