#include "BareView.h"

#include "web/GlContextGuard.h"

namespace orivex::bench {
namespace {

gtk::GRef<WebKitWebView> makeView(WebKitUserContentManager* content) {
  gtk::guardGlContext();
  return gtk::GRef<WebKitWebView>::sink(
      WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "user-content-manager", content, nullptr)));
}

void received(WebKitUserContentManager* /*content*/, JSCValue* /*body*/, gpointer posted) {
  (*static_cast<std::function<void()>*>(posted))();
}

}  // namespace

BareView::BareView(std::function<void()> posted)
    : posted_(std::move(posted)),
      content_(gtk::GRef<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())),
      view_(makeView(content_.get())) {
  g_signal_connect(content_.get(), "script-message-received::trackEvent", G_CALLBACK(received), &posted_);
  webkit_user_content_manager_register_script_message_handler(content_.get(), "trackEvent", nullptr);
}

BareView::~BareView() {
  g_signal_handlers_disconnect_by_data(content_.get(), &posted_);
}

void BareView::evaluate(const std::string& script) {
  webkit_web_view_evaluate_javascript(view_.get(), script.c_str(), -1, nullptr, nullptr, nullptr, nullptr, nullptr);
}

}  // namespace orivex::bench
