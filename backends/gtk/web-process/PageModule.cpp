// Loaded by WebKit into each page's process, where it does what the engine has no setting for:
// - Requests and scripts of the page carry the component's user agent. The engine's own setting takes only texts of the
//   form that browsers use, and the chat server knows its clients by another. Web sockets keep WebKit's user agent:
//   their handshakes pass no module.
// - Only the page itself can post messages. What stands in a frame of it may come from anywhere.
// - What a page writes to its console goes to the log, where that is asked for: each message is cut, and more than
//   twenty in a second are dropped.
// - The process says where it is on the accessibility bus, so that screen readers find the page.
// - Neither the page's own document nor its address, which holds the visitor's token, is kept on the disk.

#include <algorithm>
#include <cstring>
#include <string>

#include <webkit/webkit-web-process-extension.h>

namespace {

// Never freed: the process has one user agent until it ends. Empty: WebKit's own.
const char* userAgent = nullptr;

bool tellsConsole = false;

gboolean sendRequest(WebKitWebPage* page, WebKitURIRequest* request, WebKitURIResponse* /*redirect*/,
                     gpointer /*data*/) {
  // Null for requests that are not HTTP.
  SoupMessageHeaders* const headers = webkit_uri_request_get_http_headers(request);
  if (!headers) return FALSE;
  if (*userAgent) soup_message_headers_replace(headers, "User-Agent", userAgent);
  // Of what a document loads WebKit's cache notes the page's address, in frames too, but not when the request for the
  // document was conditional.
  const char* const accepted = soup_message_headers_get_one(headers, "Accept");
  if (accepted && g_str_has_prefix(accepted, "text/html")) {
    soup_message_headers_replace(headers, "If-None-Match", "\"none\"");
  }
  if (g_strcmp0(webkit_uri_request_get_uri(request), webkit_web_page_get_uri(page)) == 0) {
    soup_message_headers_replace(headers, "Cache-Control", "no-store");
  }
  return FALSE;
}

const char* nameOf(WebKitConsoleMessageLevel level) {
  switch (level) {
    case WEBKIT_CONSOLE_MESSAGE_LEVEL_INFO:
      return "info";
    case WEBKIT_CONSOLE_MESSAGE_LEVEL_LOG:
      return "log";
    case WEBKIT_CONSOLE_MESSAGE_LEVEL_WARNING:
      return "warning";
    case WEBKIT_CONSOLE_MESSAGE_LEVEL_ERROR:
      return "error";
    case WEBKIT_CONSOLE_MESSAGE_LEVEL_DEBUG:
      return "debug";
  }
  return "";
}

// At most `longest` bytes and what says so, as a message between processes takes it: in valid UTF-8.
std::string cut(const char* text, std::size_t longest) {
  const auto length = std::strlen(text);
  char* const valid = g_utf8_make_valid(text, static_cast<gssize>(std::min(length, longest)));
  std::string result = valid;
  g_free(valid);
  if (length > longest) result += "... (" + std::to_string(length) + " bytes)";
  return result;
}

void consoleMessageSent(WebKitWebPage* page, WebKitConsoleMessage* message, gpointer /*data*/) {
  constexpr int mostInASecond = 20;
  static gint64 second = 0;
  static int sent = 0;
  const gint64 now = g_get_monotonic_time() / G_USEC_PER_SEC;
  if (second != now) sent = 0;
  second = now;
  if (sent > mostInASecond) return;
  const bool isLast = sent++ == mostInASecond;
  const auto text = isLast ? "more messages in this second are dropped"
                           : nameOf(webkit_console_message_get_level(message)) + std::string(": ") +
                                 cut(webkit_console_message_get_text(message), 1024);
  const char* const source = webkit_console_message_get_source_id(message);
  GVariant* const parameters = g_variant_new("(ssu)", text.c_str(), cut(source ? source : "", 256).c_str(),
                                             webkit_console_message_get_line(message));
  webkit_web_page_send_message_to_view(page, webkit_user_message_new("console", parameters), nullptr, nullptr, nullptr);
}

// WebKit tells nobody the name of its connection. The bus knows that the one made here has the same process at its end.
void busConnected(GObject* /*source*/, GAsyncResult* result, gpointer question) {
  static GDBusConnection* bus = nullptr;  // open until the name has been looked up, at the most until the next question
  g_clear_object(&bus);
  bus = g_dbus_connection_new_for_address_finish(result, nullptr);
  GVariant* const name = bus ? g_variant_new_string(g_dbus_connection_get_unique_name(bus)) : nullptr;
  webkit_user_message_send_reply(WEBKIT_USER_MESSAGE(question), webkit_user_message_new("accessibility", name));
  g_object_unref(question);
}

gboolean messageReceived(WebKitWebPage* /*page*/, WebKitUserMessage* message, gpointer /*data*/) {
  const char* const address = g_getenv("AT_SPI_BUS_ADDRESS");
  if (!address || g_strcmp0(webkit_user_message_get_name(message), "accessibility") != 0) return FALSE;
  const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                       G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  g_dbus_connection_new_for_address(address, flags, nullptr, nullptr, busConnected, g_object_ref(message));
  return TRUE;
}

void pageCreated(WebKitWebProcessExtension* /*extension*/, WebKitWebPage* page, gpointer /*data*/) {
  g_signal_connect(page, "send-request", G_CALLBACK(sendRequest), nullptr);
  g_signal_connect(page, "user-message-received", G_CALLBACK(messageReceived), nullptr);
  if (tellsConsole) g_signal_connect(page, "console-message-sent", G_CALLBACK(consoleMessageSent), nullptr);
}

void setNavigatorUserAgent(JSCContext* context) {
  JSCValue* const navigator = jsc_context_get_value(context, "navigator");
  JSCValue* const text = jsc_value_new_string(context, userAgent);
  jsc_value_object_define_property_data(navigator, "userAgent", JSC_VALUE_PROPERTY_ENUMERABLE, text);
  g_object_unref(text);
  g_object_unref(navigator);
}

// window.webkit itself cannot be removed, but what leads on from it can, and each frame has that of its own.
void removeMessageHandlers(JSCContext* context) {
  g_object_unref(jsc_context_evaluate(context, "delete Object.getPrototypeOf(webkit).messageHandlers", -1));
}

// Comes before the first script of each document, an empty one too.
void windowCleared(WebKitScriptWorld* world, WebKitWebPage* /*page*/, WebKitFrame* frame, gpointer /*data*/) {
  JSCContext* const context = webkit_frame_get_js_context_for_script_world(frame, world);
  if (*userAgent) setNavigatorUserAgent(context);
  if (!webkit_frame_is_main_frame(frame)) removeMessageHandlers(context);
  g_object_unref(context);
}

}  // namespace

// The name that WebKit looks up.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" G_MODULE_EXPORT void webkit_web_process_extension_initialize_with_user_data(
    WebKitWebProcessExtension* extension, const GVariant* userData) {
  gboolean isLogAsked = FALSE;
  g_variant_get(const_cast<GVariant*>(userData), "(sb)", &userAgent, &isLogAsked);
  tellsConsole = isLogAsked != FALSE;
  g_signal_connect(extension, "page-created", G_CALLBACK(pageCreated), nullptr);
  g_signal_connect(webkit_script_world_get_default(), "window-object-cleared", G_CALLBACK(windowCleared), nullptr);
}
