#include "PageBackKeys.h"

#include "PageScript.h"

namespace orivex::gtk {
namespace {

// Its own world: the page can neither see nor undo nor forge it.
constexpr const char* world = "OrivexSDKKeys";
constexpr const char* handler = "backKey";

// The verdict comes after the last of the page's own listeners. In a field the arrow would move the caret, natively.
constexpr const char* script = R"js(
const leadsBack = (event) => event.isTrusted && !event.isComposing && !event.ctrlKey && !event.shiftKey &&
    !event.metaKey && (event.altKey ? event.key === 'ArrowLeft' : ['Escape', 'BrowserBack'].includes(event.key));
const judge = (event) => {
  if (event.defaultPrevented || !leadsBack(event)) return;
  if (event.key === 'Escape' && document.querySelector('dialog:modal, [popover]:popover-open')) return;
  event.preventDefault();
  webkit.messageHandlers.backKey.postMessage(null);
};
addEventListener('keydown', () => addEventListener('keydown', judge, {once: true}), true);
)js";

}  // namespace

PageBackKeys::PageBackKeys(WebKitWebView* view) : view_(view) {
  auto* const content = webkit_web_view_get_user_content_manager(view);
  pressed_ = SignalConnection::connect<&PageBackKeys::pressed>(content, "script-message-received::backKey", this);
  webkit_user_content_manager_register_script_message_handler(content, handler, world);
  addPageScript(content, script, world, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES);
}

PageBackKeys::~PageBackKeys() {
  webkit_user_content_manager_unregister_script_message_handler(webkit_web_view_get_user_content_manager(view_),
                                                                handler, world);
}

void PageBackKeys::pressed(WebKitUserContentManager* /*content*/, JSCValue* /*body*/) {
  gtk_widget_activate_action(GTK_WIDGET(view_), backAction, nullptr);
}

}  // namespace orivex::gtk
