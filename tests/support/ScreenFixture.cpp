#include "ScreenFixture.h"

#include <algorithm>

#include "Visitor.h"
#include "Widgets.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"
#include "ui/GtkApplicationPort.h"
#include "web/WebKitEngine.h"

#include "orivex/platform/Platform.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::gtk {
namespace {

constexpr const char* title = "orivex-screen";

GtkWindow* prepared(GtkWindow* window) {
  adw_init();
  install();
  if (!window) {
    window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_child(window, gtk_label_new("Shop"));
  }
  gtk_window_set_title(window, title);
  gtk_window_set_default_size(window, 360, 720);
  return window;
}

}  // namespace

ScreenFixture::ScreenFixture(const Surroundings& surroundings, GtkWindow* window)
    : gtkWindow_(prepared(window)), window_(attach(gtkWindow_, surroundings)) {
  gtk_window_present(gtkWindow_);
  // Until the shop has been painted, as it is when a visitor asks for the chat.
  auto* const clock = gtk_widget_get_frame_clock(GTK_WIDGET(gtkWindow_));
  const auto frame = gdk_frame_clock_get_frame_counter(clock);
  gtk_widget_queue_draw(GTK_WIDGET(gtkWindow_));
  wait([&] { return window_->bounds().height > 600 && gdk_frame_clock_get_frame_counter(clock) > frame + 1; }, 10);
}

ScreenFixture::~ScreenFixture() {
  gtk_window_destroy(gtkWindow_);
}

void ScreenFixture::takeKeyboard() const {
  focusWindow(gtkWindow_, title);
}

std::shared_ptr<OVKFApi> ScreenFixture::startChat(const std::string& server) {
  auto chat = std::make_shared<OVKFApi>();
  chat->conversionDelegate = recorder;
  chat->startSession(server, "entry", "key", std::make_shared<UserMappingModel>());
  return chat;
}

std::shared_ptr<OVKFApi> ScreenFixture::openChat(const std::string& server) {
  auto chat = startChat(server);
  window_->rootViewController()->present(chat, false);
  EXPECT_TRUE(wait([&] { return raised("ready"); }, 40)) << "the page did not come up";
  return chat;
}

bool ScreenFixture::raised(const std::string& event) const {
  return std::any_of(recorder->events.begin(), recorder->events.end(),
                     [&](const auto& candidate) { return candidate.first == event; });
}

std::string ScreenFixture::evaluate(OVKFApi& chat, const std::string& script) {
  auto* const view = WEBKIT_WEB_VIEW(dynamic_cast<WebKitEngine&>(chat.webView()->engine()).widget());
  return evaluateIn(view, script);
}

std::string ScreenFixture::panelText(GtkWindow* window) {
  const auto& host = *dynamic_cast<GtkApplicationPort&>(Platform::current().application).find(window);
  GtkWidget* const mask = findByClass(GTK_WIDGET(host.overlay()), "orivex-mask");
  GtkWidget* const label = mask ? findByType(mask, GTK_TYPE_LABEL) : nullptr;
  return label && gtk_widget_get_mapped(label) ? gtk_label_get_text(GTK_LABEL(label)) : "";
}

std::string evaluateIn(WebKitWebView* view, const std::string& script) {
  using Answer = std::optional<std::string>;
  // The answer may come after the wait has ended.
  const auto answer = std::make_shared<Answer>();
  webkit_web_view_evaluate_javascript(
      view, script.c_str(), -1, nullptr, nullptr, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::shared_ptr<Answer>> into(static_cast<std::shared_ptr<Answer>*>(data));
        GError* raised = nullptr;
        const auto value =
            GRef<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &raised));
        const GErrorPtr error(raised);
        **into = value ? GCharPtr(jsc_value_to_string(value.get())).get() : error->message;
      },
      new std::shared_ptr<Answer>(answer));
  EXPECT_TRUE(wait([&] { return answer->has_value(); }, 10)) << script;
  return answer->value_or("");
}

SocketServer::Handler servePage(const std::string& body) {
  return [body](const std::string& target) {
    if (!target.starts_with(chatPath)) return SocketServer::Answer{reply(404, "")};
    return SocketServer::Answer{
        reply(200, "<!doctype html><meta charset=utf-8>" + body, "Content-Type: text/html; charset=utf-8\r\n")};
  };
}

std::string raise(const std::string& event) {
  return "window.webkit.messageHandlers.trackEvent.postMessage({name:'" + event + "',attributes:{}});";
}

}  // namespace orivex::gtk
