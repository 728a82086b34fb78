// Loaded by WebKit into each page's process: gives requests and scripts of the page the component's user agent. The
// engine's own setting takes only texts of the form that browsers use, and the chat server knows its clients by
// another. Web sockets keep WebKit's user agent: their handshakes pass no module.

#include <webkit/webkit-web-process-extension.h>

namespace {

constexpr const char* header = "User-Agent";

// Never freed: the process has one user agent until it ends.
const char* userAgent = nullptr;

gboolean nameRequest(WebKitWebPage* /*page*/, WebKitURIRequest* request, WebKitURIResponse* /*redirect*/,
                     gpointer /*data*/) {
  // Null for requests that are not HTTP.
  if (SoupMessageHeaders* const headers = webkit_uri_request_get_http_headers(request)) {
    soup_message_headers_replace(headers, header, userAgent);
  }
  return FALSE;
}

void pageCreated(WebKitWebProcessExtension* /*extension*/, WebKitWebPage* page, gpointer /*data*/) {
  g_signal_connect(page, "send-request", G_CALLBACK(nameRequest), nullptr);
}

void nameNavigator(WebKitScriptWorld* world, WebKitWebPage* /*page*/, WebKitFrame* frame, gpointer /*data*/) {
  JSCContext* const context = webkit_frame_get_js_context_for_script_world(frame, world);
  JSCValue* const navigator = jsc_context_get_value(context, "navigator");
  JSCValue* const text = jsc_value_new_string(context, userAgent);
  jsc_value_object_define_property_data(navigator, "userAgent", JSC_VALUE_PROPERTY_ENUMERABLE, text);
  g_object_unref(text);
  g_object_unref(navigator);
  g_object_unref(context);
}

}  // namespace

extern "C" G_MODULE_EXPORT void webkit_web_process_extension_initialize_with_user_data(
    WebKitWebProcessExtension* extension, const GVariant* userData) {
  userAgent = g_strdup(g_variant_get_string(const_cast<GVariant*>(userData), nullptr));
  if (!*userAgent) return;
  g_signal_connect(extension, "page-created", G_CALLBACK(pageCreated), nullptr);
  g_signal_connect(webkit_script_world_get_default(), "window-object-cleared", G_CALLBACK(nameNavigator), nullptr);
}
