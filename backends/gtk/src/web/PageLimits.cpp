#include "PageLimits.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"
#include "PageScripts.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Links and pictures stay in the page, and files or links from elsewhere do not replace it. A page that takes part in
// dragging or pastes is left to it: the verdict on an event comes after the last of the page's own listeners. Files
// that it leaves alone are offered to the component.
constexpr const char* dragGuard = R"js(
addEventListener('dragstart', (event) => {
  const from = event.target;
  if (from instanceof Element && !from.closest('[draggable=true]')) event.preventDefault();
}, true);
const mayOffer = (event) => event.isTrusted && window === top;
const judge = (event) => {
  const target = event.composedPath()[0];
  const data = event.dataTransfer;
  const has = (type) => data && [...data.types].includes(type);
  const lists = has('text/uri-list');
  // Only a drop shows what it brings. Of a file a text field would take the path, which is the visitor's own business.
  const isLink = /^(https?|mailto|tel):/i.test(lists && event.type === 'drop' ? data.getData('text/uri-list') : 'http:');
  const files = has('Files') || !isLink;
  const takers = 'input[type=file]:not(:disabled)' + (files ? '' : ', :read-write');
  const takesDrops = target instanceof Element && target.matches(takers);
  if (event.defaultPrevented || takesDrops || !(files || lists)) return;
  event.preventDefault();
  const isOffered = mayOffer(event) && (files || event.type !== 'drop');
  event.dataTransfer.dropEffect = isOffered ? 'copy' : 'none';
  if (isOffered && event.type === 'drop') webkit.messageHandlers.offeredFiles.postMessage(true);
};
// Of a file, too, a page is told that it is text, but gets none.
const judgePaste = (event) => {
  const hasWords = ['text/plain', 'text/html', 'text/uri-list'].some((type) => event.clipboardData?.getData(type));
  if (event.defaultPrevented || hasWords || !mayOffer(event)) return;
  event.preventDefault();
  webkit.messageHandlers.offeredFiles.postMessage(false);
};
addEventListener('paste', () => addEventListener('paste', judgePaste, {once: true}), true);
for (const type of ['dragenter', 'dragover', 'drop']) {
  addEventListener(type, () => addEventListener(type, judge, {once: true}), true);
}
)js";

constexpr WebKitContextMenuAction keptActions[] = {
    WEBKIT_CONTEXT_MENU_ACTION_CUT,
    WEBKIT_CONTEXT_MENU_ACTION_COPY,
    WEBKIT_CONTEXT_MENU_ACTION_PASTE,
    WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL,
    WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD,
    WEBKIT_CONTEXT_MENU_ACTION_INSPECT_ELEMENT,  // there where the page may be inspected
};

bool isKept(WebKitContextMenuItem* item) {
  const auto action = webkit_context_menu_item_get_stock_action(item);
  return std::find(std::begin(keptActions), std::end(keptActions), action) != std::end(keptActions);
}

void disableFeature(WebKitSettings* settings, std::string_view name) {
  auto* const features = webkit_settings_get_all_features();
  for (gsize index = 0; index < webkit_feature_list_get_length(features); ++index) {
    auto* const feature = webkit_feature_list_get(features, index);
    if (webkit_feature_get_identifier(feature) == name) webkit_settings_set_feature_enabled(settings, feature, FALSE);
  }
  webkit_feature_list_unref(features);
}

void limitSettings(WebKitSettings* settings) {
  // They outlive the visit in which a page has put them there.
  disableFeature(settings, "ServiceWorkers");
  // The desktop would ask the visitor for the camera before this process is asked, and refuses.
  webkit_settings_set_enable_media_stream(settings, FALSE);
  // The view reaches below the window's edge, so a page that fills the display would lose its controls, and the window
  // is the host's: a page that asks first learns that it cannot.
  webkit_settings_set_enable_fullscreen(settings, FALSE);
  webkit_settings_set_enable_back_forward_navigation_gestures(settings, FALSE);
}

// WebKit has no setting for pinching.
void removeZoomGestures(GtkWidget* view) {
  const auto controllers = GRef<GListModel>::adopt(gtk_widget_observe_controllers(view));
  for (guint index = 0; index < g_list_model_get_n_items(controllers.get()); ++index) {
    const auto controller = GRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(controllers.get(), index)));
    if (!GTK_IS_GESTURE_ZOOM(controller.get())) continue;
    gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(controller.get()), GTK_PHASE_NONE);
  }
}

// Sees the keys before WebKit does; the view owns it.
GtkEventController* addKeyFilter(GtkWidget* view) {
  GtkEventController* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(view, keys);
  return keys;
}

// An empty menu does not open.
bool removeMenuItems(WebKitContextMenu* menu) {
  const GListPtr items(g_list_copy(webkit_context_menu_get_items(menu)));
  for (const GList* item = items.get(); item; item = item->next) {
    auto* const candidate = WEBKIT_CONTEXT_MENU_ITEM(item->data);
    if (!isKept(candidate)) webkit_context_menu_remove(menu, candidate);
  }
  return webkit_context_menu_get_n_items(menu) == 0;
}

// What the module in the page's process tells of the page's console.
bool logConsole(WebKitUserMessage* message) {
  const char* text = nullptr;
  const char* source = nullptr;
  guint line = 0;
  auto* const parameters = webkit_user_message_get_parameters(message);
  if (!parameters || !g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssu)"))) return false;
  g_variant_get(parameters, "(&s&su)", &text, &source, &line);
  log::print("console " + std::string(text) + " (" + source + ":" + std::to_string(line) + ")");
  return true;
}

}  // namespace

SignalConnections limitPage(WebKitWebView* view) {
  limitSettings(webkit_web_view_get_settings(view));
  removeZoomGestures(GTK_WIDGET(view));
  addPageScript(webkit_web_view_get_user_content_manager(view), dragGuard, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                limitsWorld);
  SignalConnections limits;
  // WebKit looks keys up in a text view that is never shown; this one starts that view's blinking caret, which GTK ends
  // the process for.
  limits.add(addKeyFilter(GTK_WIDGET(view)), "key-pressed", [](guint key) { return key == GDK_KEY_F7; });
  limits.add(view, "permission-request", [](WebKitPermissionRequest* request) {
    log::print(std::string("The page was refused a permission: ") + G_OBJECT_TYPE_NAME(request), log::Level::info);
    webkit_permission_request_deny(request);
    return true;
  });
  limits.add(view, "query-permission-state", [](WebKitPermissionStateQuery* query) {
    webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
    return true;
  });
  limits.add(view, "user-message-received", [](WebKitUserMessage* message) { return logConsole(message); });
  limits.add(view, "context-menu", [](WebKitContextMenu* menu) { return removeMenuItems(menu); });
  limits.add(view, "print", [] {
    log::print("The page wants to print; it does not", log::Level::info);
    return true;
  });
  limits.add(view, "close",
             [] { log::print("The page wants to close its window; it posts goBack to leave", log::Level::info); });
  return limits;
}

}  // namespace orivex::gtk
