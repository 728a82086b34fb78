#pragma once

#include <gtk/gtk.h>

G_BEGIN_DECLS

/**
 * OrivexError:
 * @ORIVEX_ERROR_BAD_ADDRESS: server, entry and key make no address
 * @ORIVEX_ERROR_REFUSED: the server answered with an error status
 * @ORIVEX_ERROR_TIMED_OUT: no answer in time; a page that is only slow may still come
 * @ORIVEX_ERROR_UNREACHABLE: no answer: the network, the server's name or its certificate
 * @ORIVEX_ERROR_INSECURE: an address with the visitor's token was led from https to http
 * @ORIVEX_ERROR_PAGE_LOST: the page lost its process again and again
 * @ORIVEX_ERROR_BAD_CARD: a text is not the JSON of a card
 * @ORIVEX_ERROR_WEB_DATA: some of the web data could not be removed
 *
 * What can go wrong with a chat.
 */
typedef enum {
  ORIVEX_ERROR_BAD_ADDRESS,
  ORIVEX_ERROR_REFUSED,
  ORIVEX_ERROR_TIMED_OUT,
  ORIVEX_ERROR_UNREACHABLE,
  ORIVEX_ERROR_INSECURE,
  ORIVEX_ERROR_PAGE_LOST,
  ORIVEX_ERROR_BAD_CARD,
  ORIVEX_ERROR_WEB_DATA
} OrivexError;

#define ORIVEX_ERROR (orivex_error_quark())
GQuark orivex_error_quark(void);

/**
 * OrivexVisitor:
 *
 * Who the visitor is, as far as the host knows: every property may be left out.
 */
#define ORIVEX_TYPE_VISITOR (orivex_visitor_get_type())
G_DECLARE_FINAL_TYPE(OrivexVisitor, orivex_visitor, ORIVEX, VISITOR, GObject)

OrivexVisitor* orivex_visitor_new(void);

/**
 * OrivexChat:
 *
 * A customer-service chat: a session with a chat server, and the screen that shows it. It lives as long as somebody
 * holds it, and as long as its screen shows. Main thread only.
 */
#define ORIVEX_TYPE_CHAT (orivex_chat_get_type())
G_DECLARE_FINAL_TYPE(OrivexChat, orivex_chat, ORIVEX, CHAT, GObject)

OrivexChat* orivex_chat_new(const char* host, const char* entry_id, const char* app_key, OrivexVisitor* visitor);

void orivex_chat_present(OrivexChat* self, GtkWindow* window);
void orivex_chat_close(OrivexChat* self);
gboolean orivex_chat_queue_card(OrivexChat* self, gint64 type, const char* json, GError** error);

void orivex_chat_sign_out_async(OrivexChat* self, GCancellable* cancellable, GAsyncReadyCallback callback,
                                gpointer user_data);
gboolean orivex_chat_sign_out_finish(OrivexChat* self, GAsyncResult* result, GError** error);

void orivex_chat_push(OrivexChat* self, GtkStack* stack);

/**
 * OrivexChatView:
 *
 * A widget that shows a chat in a part of a window, for example in a GtkPaned or a popover. It takes what room there
 * is, 240 by 160 points at least. When the page or the visitor goes back, the chat emits [signal@Chat::closed], and the
 * host hides the view or takes it away. Sheets, camera and messages of the chat stay over the view, dialogs over its
 * window.
 */
#define ORIVEX_TYPE_CHAT_VIEW (orivex_chat_view_get_type())
G_DECLARE_FINAL_TYPE(OrivexChatView, orivex_chat_view, ORIVEX, CHAT_VIEW, GtkWidget)

GtkWidget* orivex_chat_view_new(OrivexChat* chat);
OrivexChat* orivex_chat_view_get_chat(OrivexChatView* self);
void orivex_chat_view_set_chat(OrivexChatView* self, OrivexChat* chat);

/**
 * orivex_get_version:
 *
 * Version of the component.
 *
 * Returns: (transfer full): for example "1.2.0"
 */
char* orivex_get_version(void);

/**
 * orivex_set_language:
 * @tag: a language such as "en" or "pt-BR", or "auto" for the visitor's own
 *
 * Chooses the language of what the visitor reads of the component, which is Chinese without this call. A language that
 * has no texts gives way to English. What shows already keeps its language.
 */
void orivex_set_language(const char* tag);

G_END_DECLS
